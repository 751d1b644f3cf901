// SPDX-License-Identifier: GPL-3.0-or-later
// drawIcon: a warning, information or question sign.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** Draws a sign into the square in which the panel draws its warning picture. No screen shows it: for those who
    build on this program.
    @param kind  0: nothing; 2: a yellow triangle with "!"; 3: a white disc with "i"; any other: a white disc with "?" */
void drawIcon (juce::Graphics& g, int kind);

} // namespace wqv
