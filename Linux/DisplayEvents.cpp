// SPDX-License-Identifier: GPL-3.0-or-later
// The toolkit's own way to empty the queue, taken without its condition.

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1 // the toolkit's connection

#include "DisplayEvents.h"

#include <juce_events/native/juce_linux_EventLoopInternal.h>

namespace wqv
{
namespace
{

void handleAll()
{
    auto* const display = juce::XWindowSystem::getInstance()->getDisplay();
    juce::LinuxEventLoopInternal::invokeEventLoopCallbackForFd (XConnectionNumber (display));
}

} // namespace

DisplayEvents::DisplayEvents (juce::Component& window) : eachFrame (&window, handleAll) {}

} // namespace wqv
