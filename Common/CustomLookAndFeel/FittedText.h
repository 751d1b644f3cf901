// SPDX-License-Identifier: GPL-3.0-or-later
// Lines of text that fit into an area.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** Adds a text to an arrangement, broken into lines at spaces only, and squeezed where a line is wider than the area.

    A text with line feeds keeps its lines, broken anew where they are too long. Any other text gets one line, if it is to be
    squeezed to no less than 70 % for that, else at most @p mostLines of about the same length.

    GlyphArrangement::addFittedText does nearly the same, but JUCE 7.0.5 and 8.0.6 break lines in different ways, and 8.0.6
    begins its first text with unpacking a table of all Unicode, which took as long as half of a start. Our languages need
    nothing of it: each of their characters is a glyph.

    @param area           pixels; what does not fit into its height goes on below
    @param justification  of each line, and of a single line in the height of the area; several lines begin at its top
    @returns the bottom edge of the last line, in pixels */
float addFittedText (juce::GlyphArrangement& glyphs,
                     const juce::Font& font,
                     const juce::String& text,
                     juce::Rectangle<float> area,
                     juce::Justification justification,
                     int mostLines);

/** Draws a line of text in the colour of the context, squeezed if it is wider than the area.
    @param area  pixels */
void drawFittedLine (const juce::Graphics& g,
                     const juce::Font& font,
                     const juce::String& text,
                     juce::Rectangle<int> area,
                     juce::Justification justification);

} // namespace wqv
