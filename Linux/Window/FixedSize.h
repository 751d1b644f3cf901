// SPDX-License-Identifier: GPL-3.0-or-later
// The window's one size, and its place, which is the window manager's affair.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** Says a window's size to the window manager as its smallest and largest too, from before it is shown: one that ignores
    the hint against resizing, a tiling one for instance, obeys that one. If the window gets another size all the same, it asks
    for its own again.

    JUCE (7.0.5, 8.0.6) says it as well, but unscaled, and then writes other hints over it whenever it places the window, which it
    does even for a repaint; so they are completed on their way. And it places the window where it believes it to be, which may
    be where a frame was before the window manager had placed it (i3 4.22): a window that is shown is only given its size
    again. One object at a time, message thread only.
*/
class FixedSize final : private juce::ComponentListener
{
public:
    /** To be made when JUCE has connected to the display.
        @param windowToKeep  has the size that it is to keep, is not yet on the desktop, outlives this object */
    explicit FixedSize (juce::Component& windowToKeep);

    /** From here on the window's hints and its place are JUCE's own again. */
    ~FixedSize() override;

    FixedSize (const FixedSize&) = delete;
    FixedSize& operator= (const FixedSize&) = delete;

private:
    struct Interception;

    void componentMovedOrResized (juce::Component& component, bool wasMoved, bool wasResized) override;

    juce::Component& window;
    const juce::Rectangle<int> size;
    juce::Rectangle<int> inPixels; ///< as JUCE scales it; empty until it has
    int timesLeft = 100;           ///< to ask for its size: with a window manager that insists there would be no end
};

} // namespace wqv
