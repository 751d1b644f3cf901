// SPDX-License-Identifier: GPL-3.0-or-later
// Painting at once what has changed, so that JUCE need not look for it all the time.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

namespace wqv
{

/** Paints whatever has changed in a window at once, and lets JUCE's frames be few, or none.

    JUCE (7.0.5, 8.0.6) paints in frames. Where no display drives them, they are a timer's, for each window, at the display's
    frequency, or at 100 Hz where the display does not tell it, which never stops. Each frame wakes two threads five times, and
    an idle window so woke 500 times a second. The timer has no switch, so JUCE is told a low frequency. What remains of it lets
    go of the memory that the last painting took, after three seconds; no picture waits for it. Where the display drives the
    frames and sends none, as an emulated or a distant one may, nothing would be painted.

    One object at a time, message thread only. It covers all windows of the process: those that appear later, as menus do, from
    the next call of paint() on.
*/
class PromptPainting final : private juce::AsyncUpdater
{
public:
    /** To be made when JUCE has connected to the display.
        @param window            not yet on the desktop
        @param whenPaintedToUse  called after each paint(), if there is one */
    explicit PromptPainting (juce::Component& window, std::function<void()> whenPaintedToUse = {});

    /** From here on JUCE paints in its frames alone, with the low frequency. */
    ~PromptPainting() override;

    PromptPainting (const PromptPainting&) = delete;
    PromptPainting& operator= (const PromptPainting&) = delete;

    /** Paints what has changed in any window. To be called when events of the display have been handled: a part of a window may
        have been uncovered, the display may have taken the last picture, before which JUCE sends no other, or there may be a
        new window. */
    void paint();

private:
    class Watch;

    void handleAsyncUpdate() override { paint(); }

    const std::function<void()> whenPainted;
};

} // namespace wqv
