// SPDX-License-Identifier: GPL-3.0-or-later
// How text is broken into lines and squeezed.

#include "FittedText.h"

#include "JuceVersions.h"

#include <cmath>
#include <limits>

namespace wqv
{
namespace
{

constexpr float smallestHorizontalScale = 0.7f;

float widthOf (const juce::String& line, const juce::Font& font)
{
    juce::GlyphArrangement glyphs;
    addLineOfText (glyphs, font, line);
    return glyphs.getBoundingBox (0, -1, true).getWidth();
}

/** Breaks a text at spaces. A new line begins before a word that would make the line wider than @p most, and after a line
    that, with a space behind it, is wider than @p enough; the last line allowed takes all the rest. */
juce::StringArray brokenAtSpaces (
    const juce::String& text, const juce::Font& font, float enough, float most, int mostLines)
{
    juce::StringArray lines { juce::String() };

    for (const auto& word : juce::StringArray::fromTokens (text, " ", {}))
    {
        auto& line = lines.getReference (lines.size() - 1);
        const auto longerLine = line.isEmpty() ? word : line + " " + word;

        if (line.isEmpty() || lines.size() == mostLines
            || (widthOf (line + " ", font) <= enough && widthOf (longerLine, font) <= most))
            line = longerLine;
        else
            lines.add (word);
    }

    return lines;
}

juce::StringArray linesOf (const juce::String& text, const juce::Font& font, float width, int mostLines)
{
    if (text.containsChar ('\n'))
    {
        juce::StringArray lines;

        for (const auto& line : juce::StringArray::fromLines (text))
            lines.addArray (brokenAtSpaces (line, font, width, width, std::numeric_limits<int>::max()));

        return lines;
    }

    // Room for lines that end early, because the next word is long.
    constexpr float allowance = 80.0f;

    const auto total = widthOf (text, font);
    const auto count = total * smallestHorizontalScale < width
                           ? 1
                           : juce::jmin (mostLines, static_cast<int> ((total + allowance) / width) + 1);

    return brokenAtSpaces (text, font, total / static_cast<float> (count), width / smallestHorizontalScale, count);
}

} // namespace

float addFittedText (juce::GlyphArrangement& glyphs,
                     const juce::Font& font,
                     const juce::String& text,
                     juce::Rectangle<float> area,
                     juce::Justification justification,
                     int mostLines)
{
    const auto lines = linesOf (text, font, area.getWidth(), mostLines);
    const auto lineHeight = lines.size() > 1 ? font.getHeight() : area.getHeight();
    auto y = area.getY();

    for (const auto& line : lines)
    {
        const auto start = glyphs.getNumGlyphs();
        addLineOfText (glyphs, font, line);
        const auto count = glyphs.getNumGlyphs() - start;

        if (const auto width = glyphs.getBoundingBox (start, count, true).getWidth(); width > area.getWidth())
            glyphs.stretchRangeOfGlyphs (start, count, area.getWidth() / width);

        glyphs.justifyGlyphs (start, count, area.getX(), y, area.getWidth(), lineHeight, justification);
        y += font.getHeight();

        // Onto a whole pixel: JUCE 7.0.5 rounds to one when it draws, 8.0.6 takes the one above.
        if (count > 0)
        {
            const auto baseline = glyphs.getGlyph (start).getBaselineY();
            glyphs.moveRangeOfGlyphs (start, count, 0.0f, std::round (baseline) - baseline);
        }
    }

    return y;
}

void drawFittedLine (const juce::Graphics& g,
                     const juce::Font& font,
                     const juce::String& text,
                     juce::Rectangle<int> area,
                     juce::Justification justification)
{
    juce::GlyphArrangement glyphs;
    addFittedText (glyphs, font, text, area.toFloat(), justification, 1);
    glyphs.draw (g);
}

} // namespace wqv
