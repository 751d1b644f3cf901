// SPDX-License-Identifier: GPL-3.0-or-later
// A smallest and largest size in the window's hints.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** Says a window's size to the window manager as its smallest and largest too, from before it is shown: one that ignores
    the hint against resizing, a tiling one for instance, obeys that one.

    JUCE says it as well, but unscaled, and then writes other hints over it whenever it places the window, which it
    does even for a repaint; so they are completed on their way. One object at a time, message thread only.
*/
class FixedSize
{
public:
    /** To be made when JUCE has connected to the display.
        @param windowToKeep  has the size that it is to keep, is not yet on the desktop, outlives this object */
    explicit FixedSize (const juce::Component& windowToKeep);

    /** From here on the window's hints are JUCE's own again. */
    ~FixedSize();

    FixedSize (const FixedSize&) = delete;
    FixedSize& operator= (const FixedSize&) = delete;

private:
    struct Completion;

    const juce::Component& window;
    const juce::Rectangle<int> size;
    juce::Rectangle<int> inPixels; ///< as JUCE scales it; empty until it has
};

} // namespace wqv
