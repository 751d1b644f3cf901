// SPDX-License-Identifier: GPL-3.0-or-later
// How text is broken into lines and squeezed, at many widths.

#include "FittedText.h"
#include "JuceVersions.h"
#include "MessageLoop.h"
#include "ProgramLookAndFeel.h"

#include <gtest/gtest.h>

namespace wqv
{
namespace
{

/** A text as it is laid out: its lines, and the right edge and the narrowest scale of all. */
struct Layout
{
    juce::StringArray lines;
    float right = 0.0f;
    float scale = 1.0f;
    float bottom = 0.0f;
};

Layout layOut (const juce::String& text, juce::Rectangle<float> area, int mostLines)
{
    const juce::Font font (FontOptions ("WQV Sans", 13.0f, juce::Font::plain));
    juce::GlyphArrangement glyphs;
    Layout layout;
    layout.bottom = addFittedText (glyphs, font, text, area, juce::Justification::topLeft, mostLines);

    for (int i = 0; i < glyphs.getNumGlyphs();)
    {
        const auto first = i;
        juce::String line;

        for (; i < glyphs.getNumGlyphs()
               && glyphs.getGlyph (i).getBounds().getY() == glyphs.getGlyph (first).getBounds().getY();
             ++i)
            line += glyphs.getGlyph (i).getCharacter();

        juce::GlyphArrangement natural;
        addLineOfText (natural, font, line);
        const auto bounds = glyphs.getBoundingBox (first, i - first, true);

        layout.lines.add (line);
        layout.right = juce::jmax (layout.right, bounds.getRight());
        layout.scale =
            juce::jmin (layout.scale, bounds.getWidth() / natural.getBoundingBox (0, -1, true).getWidth() + 0.001f);
    }

    return layout;
}

TEST (FittedText, keepsWordsWholeAndToItsArea)
{
    const MessageLoop keepsJuce;
    ProgramLookAndFeel look;
    juce::LookAndFeel::setDefaultLookAndFeel (&look);
    const juce::String text ("Connect the USB-A terminal on your WQV-KRV20 and your computer using a USB cable.");

    for (auto width = 100; width < 600; width += 7)
    {
        for (auto mostLines = 1; mostLines < 5; ++mostLines)
        {
            SCOPED_TRACE (std::to_string (width) + " wide, lines: " + std::to_string (mostLines));
            const juce::Rectangle<float> area (20.0f, 30.0f, static_cast<float> (width), 100.0f);
            const auto fitted = layOut (text, area, mostLines);

            EXPECT_EQ (fitted.lines.joinIntoString (" "), text);
            EXPECT_LE (fitted.lines.size(), mostLines);
            EXPECT_LE (fitted.right, area.getRight() + 0.01f);
            EXPECT_TRUE (fitted.scale >= 0.7f || fitted.lines.size() == mostLines);
            EXPECT_FLOAT_EQ (fitted.bottom, 30.0f + 13.0f * static_cast<float> (fitted.lines.size()));

            // With a line feed it is never squeezed, and has as many lines as that takes; an empty one counts.
            const auto wrapped = layOut (text + "\n", area, mostLines);
            EXPECT_EQ (wrapped.lines.joinIntoString (" "), text);
            EXPECT_LE (wrapped.right, area.getRight() + 0.01f);
            EXPECT_GE (wrapped.scale, 1.0f);
            EXPECT_FLOAT_EQ (wrapped.bottom, 30.0f + 13.0f * static_cast<float> (wrapped.lines.size() + 1));
        }
    }

    // One line rather than two, as long as it can be read; two of about the same length rather than a long and a short.
    const juce::Rectangle<float> area (0.0f, 0.0f, 360.0f, 32.0f);
    EXPECT_EQ (layOut (text, area, 2).lines.size(), 1);
    const auto two = layOut (text, area.withWidth (300.0f), 2);
    EXPECT_EQ (two.lines.size(), 2);
    EXPECT_GE (two.scale, 1.0f);

    juce::LookAndFeel::setDefaultLookAndFeel (nullptr);
}

} // namespace
} // namespace wqv
