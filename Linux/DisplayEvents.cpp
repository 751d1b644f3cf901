// SPDX-License-Identifier: GPL-3.0-or-later
// The toolkit's own way to empty the queue, taken without its condition.

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1 // the toolkit's connection

#include "DisplayEvents.h"

#include "JuceVersions.h"

#include WQV_JUCE_EVENT_LOOP_INTERNAL

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
