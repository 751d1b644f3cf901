// SPDX-License-Identifier: GPL-3.0-or-later
// Handling the events that Xlib has read from the display's connection and keeps in its queue.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** Sees to it that no event of the display waits for the next one.

    JUCE (7.0.5, 8.0.6) sleeps until there is something to read on the connection. But whatever it asks the display meanwhile, to
    paint for instance, takes all that has come off the connection too, into Xlib's queue: the release of a mouse button
    would then press a button only when the mouse moves again. So the queue is emptied at every frame of a window, for
    which JUCE is awake in any case.
*/
class DisplayEvents
{
public:
    /** @param window  a component on the desktop, which outlives this object; message thread only */
    explicit DisplayEvents (juce::Component& window);

private:
    juce::VBlankAttachment eachFrame;
};

} // namespace wqv
