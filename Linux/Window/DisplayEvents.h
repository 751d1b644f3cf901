// SPDX-License-Identifier: GPL-3.0-or-later
// Events of the display: none waits in Xlib's queue, and a held key is not told as released.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

namespace wqv
{

/** Sees to it that no event of the display waits for the next one, and that a key that is held is not told as released.

    JUCE (7.0.5, 8.0.6) sleeps until there is something to read on the connection. But whatever it asks the display
    meanwhile, to paint for instance, takes all that has come off the connection too, into Xlib's queue: the release of a
    mouse button would then press a button only when the mouse moves again. So Xlib says when it puts an event into its queue,
    and a message that is sent then empties it.

    The display repeats a key that is held as pairs of release and press. JUCE (7.0.5, 8.0.6) knows such a pair only if both
    have come when it reads the first: 49 of 578 it took for a release. The display is told to leave these releases out.

    One object at a time, message thread only.
*/
class DisplayEvents final : private juce::AsyncUpdater
{
public:
    /** To be made when JUCE has connected to the display.
        @param whenHandledToUse  called after events, as soon as JUCE has handled all that have come */
    explicit DisplayEvents (std::function<void()> whenHandledToUse = [] {});

    /** From here on Xlib's queue is JUCE's own matter again. */
    ~DisplayEvents() override;

    DisplayEvents (const DisplayEvents&) = delete;
    DisplayEvents& operator= (const DisplayEvents&) = delete;

    /** Sends the display what waits to be sent. */
    static void flush();

private:
    struct Arrival;

    void handleAsyncUpdate() override;

    const std::function<void()> whenHandled;
};

} // namespace wqv
