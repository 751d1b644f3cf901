// SPDX-License-Identifier: GPL-3.0-or-later
// JUCE's own way to empty Xlib's queue, called at every frame, and a setting for held keys.

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1 // JUCE's connection

#include "DisplayEvents.h"

#include "JuceVersions.h"

#include <X11/XKBlib.h>
#include WQV_JUCE_EVENT_LOOP_INTERNAL

namespace wqv
{
namespace
{

::Display* display()
{
    return juce::XWindowSystem::getInstance()->getDisplay();
}

void handleAll()
{
    juce::LinuxEventLoopInternal::invokeEventLoopCallbackForFd (XConnectionNumber (display()));
}

} // namespace

DisplayEvents::DisplayEvents (juce::Component& window) : eachFrame (&window, handleAll)
{
    XkbSetDetectableAutoRepeat (display(), True, nullptr);
}

} // namespace wqv
