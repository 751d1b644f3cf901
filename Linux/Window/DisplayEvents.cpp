// SPDX-License-Identifier: GPL-3.0-or-later
// Handling all events in Xlib's queue, by JUCE's own way.

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1 // JUCE's connection

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
