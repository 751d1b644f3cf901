// SPDX-License-Identifier: GPL-3.0-or-later
// The looks, painted into images.

#include "AlineButton.h"
#include "DefaultLook.h"
#include "LangLookAndFeel.h"
#include "MessageLoop.h"
#include "ProgressLookAndFeel.h"
#include "TxtLoader.h"

#include <gtest/gtest.h>

namespace wqv
{

namespace
{

class Looks : public testing::Test
{
protected:
    MessageLoop loop;
    DefaultLook defaultLook;
};

template <typename Painter>
juce::Image painted (int width, int height, Painter&& paint)
{
    juce::Image image (juce::Image::ARGB, width, height, true);
    juce::Graphics g (image);
    paint (g);
    return image;
}

juce::Image paintedButton (AlineButton& button, bool isDown = false)
{
    const auto paint = [&] (juce::Graphics& g) { button.paintButton (g, false, isDown); };
    return painted (button.getWidth(), button.getHeight(), paint);
}

void expectNear (juce::Colour actual, juce::Colour expected)
{
    constexpr int tolerance = 16;

    EXPECT_TRUE (std::abs (actual.getRed() - expected.getRed()) <= tolerance
                 && std::abs (actual.getGreen() - expected.getGreen()) <= tolerance
                 && std::abs (actual.getBlue() - expected.getBlue()) <= tolerance)
        << actual.toString() << " instead of " << expected.toString();
}

TEST_F (Looks, captionIsAtMost13PixelsHighAndFourFifthsOfTheButton)
{
    const std::pair<int, float> heights[] = { { 10, 8.0f }, { 15, 12.0f }, { 30, 13.0f }, { 60, 13.0f } };

    for (const auto& [buttonHeight, fontHeight] : heights)
    {
        AlineButton button ("");
        button.setSize (100, buttonHeight);
        const auto without = paintedButton (button);
        button.setButtonText ("HHHHHH");
        const auto with = paintedButton (button);

        int first = 100;
        int last = 0;

        for (int y = 0; y < buttonHeight; ++y)
            for (int x = 0; x < 100; ++x)
                if (with.getPixelAt (x, y) != without.getPixelAt (x, y))
                {
                    first = juce::jmin (first, x);
                    last = juce::jmax (last, x);
                }

        juce::GlyphArrangement line;
        line.addLineOfText (juce::Font (juce::Font::getDefaultSansSerifFontName(), fontHeight, 0), "HHHHHH", 0, 0);
        juce::Path outline;
        line.createPath (outline);

        // Heights are too few pixels to tell apart, so the width stands for them.
        EXPECT_NEAR (last + 1 - first, outline.getBounds().getWidth(), 2.0f) << buttonHeight;
        EXPECT_NEAR (last + first, 99, 2) << buttonHeight;
    }
}

TEST_F (Looks, buttonBackground)
{
    AlineButton button ("");
    button.setSize (100, 20);

    for (const auto id : { juce::TextButton::buttonColourId, juce::TextButton::buttonOnColourId })
    {
        EXPECT_EQ (button.findColour (id), juce::Colours::black);
        button.setColour (id, juce::Colour (234, 234, 234));
    }

    struct Row
    {
        int y;
        juce::Colour idle, pressed;
    };

    const auto idle = paintedButton (button);
    const auto pressed = paintedButton (button, true);
    const auto outline = juce::Colour (234, 234, 234).darker (0.7f);

    for (const auto& row : { Row { 0, outline, outline },
                             Row { 1, juce::Colours::white, juce::Colour (185, 200, 240) },
                             Row { 9, juce::Colour (195, 195, 195), juce::Colour (82, 156, 231) },
                             Row { 18, juce::Colours::white, juce::Colour (140, 222, 253) } })
    {
        expectNear (idle.getPixelAt (50, row.y), row.idle);
        expectNear (pressed.getPixelAt (50, row.y), row.pressed);
    }

    // Corners are round but where a side is joined to something.
    EXPECT_TRUE (idle.getPixelAt (1, 1).isTransparent());
    button.setConnectedEdges (juce::Button::ConnectedOnLeft);
    EXPECT_FALSE (paintedButton (button).getPixelAt (1, 1).isTransparent());
    EXPECT_TRUE (paintedButton (button).getPixelAt (98, 1).isTransparent());
}

TEST_F (Looks, aButtonOfTheOutlinesSizeHasNoBackground)
{
    for (const auto& [width, height, isDrawn] :
         { std::tuple (2, 20, false), std::tuple (20, 2, false), std::tuple (3, 20, true), std::tuple (20, 3, true) })
    {
        AlineButton button ("");
        button.setSize (width, height);
        EXPECT_EQ (! paintedButton (button).getPixelAt (width / 2, height / 2).isTransparent(), isDrawn);
    }
}

TEST_F (Looks, progressBar)
{
    const juce::Colour background (8, 8, 8);
    const std::pair<double, int> cases[] = { { 0.0, 0 }, { 0.5, 100 }, { 1.0, 200 }, { 7.0, 200 }, { -1.0, 0 } };
    double progress = 0.0;
    juce::ProgressBar bar (progress);
    bar.setColour (juce::ProgressBar::backgroundColourId, background);
    ProgressLookAndFeel look;
    const auto paintedBar = [&] (double value, const char* text)
    { return painted (204, 20, [&] (juce::Graphics& g) { look.drawProgressBar (g, bar, 204, 20, value, text); }); };

    for (const auto& [value, width] : cases)
    {
        const auto image = paintedBar (value, "");

        for (int x = 0; x < 204; ++x)
            EXPECT_EQ (image.getPixelAt (x, 9) != background, x >= 2 && x < 2 + width) << value << " at " << x;
    }

    const auto image = paintedBar (1.0, "");
    EXPECT_EQ (image.getPixelAt (100, 1), background);
    expectNear (image.getPixelAt (100, 2), juce::Colour (167, 167, 167));
    expectNear (image.getPixelAt (100, 9), juce::Colour (100, 100, 100));
    expectNear (image.getPixelAt (100, 17), juce::Colour (108, 108, 108));
    EXPECT_EQ (image.getPixelAt (100, 18), background);

    const auto labelled = paintedBar (0.0, "50%");
    auto brightest = 0.0f;

    for (int x = 80; x < 124; ++x)
        brightest = juce::jmax (brightest, labelled.getPixelAt (x, 10).getBrightness());

    EXPECT_GT (brightest, 0.9f);
}

/** Tells which fallback font an item's own drawing meets. */
class Probe final : public juce::DrawablePath
{
public:
    explicit Probe (juce::String& seenToUse) : seen (seenToUse)
    {
        juce::Path square;
        square.addRectangle (0, 0, 10, 10);
        setPath (square);
    }

    void paint (juce::Graphics&) override { seen = juce::Font::getFallbackFontName(); }

private:
    juce::String& seen;
};

TEST_F (Looks, languageMenu)
{
    const auto& texts = *TxtLoader::getInstance();
    LangLookAndFeel look;
    const auto paintedItem = [&] (const juce::String& text, bool isSeparator, bool isHighlighted, juce::Drawable* icon)
    {
        return painted (
            100,
            24,
            [&] (juce::Graphics& g)
            {
                look.drawPopupMenuItem (
                    g, { 0, 4, 100, 20 }, isSeparator, true, isHighlighted, false, false, text, "", icon, nullptr);
            });
    };

    look.setColour (juce::PopupMenu::highlightedBackgroundColourId, juce::Colours::red);
    EXPECT_EQ (paintedItem ("x", false, true, nullptr).getPixelAt (1, 5), juce::Colour (0xFF000040));
    EXPECT_TRUE (paintedItem ("x", false, true, nullptr).getPixelAt (0, 4).isTransparent());
    EXPECT_TRUE (paintedItem ("x", false, false, nullptr).getPixelAt (1, 5).isTransparent());
    EXPECT_FALSE (paintedItem ("", true, false, nullptr).getPixelAt (50, 14).isTransparent());

    juce::Font::setFallbackFontName ("Some Font");

    const std::pair<juce::String, juce::String> fallbacks[] = { { texts.getLang (11), texts.getFont (11) },
                                                                { texts.getLang (9), texts.getFont (9) },
                                                                { "ENGLISH", texts.getFont (0) },
                                                                { "no language", "Some Font" } };

    for (const auto& [text, expected] : fallbacks)
    {
        juce::String seen;
        Probe probe (seen);
        paintedItem (text, false, false, &probe);
        EXPECT_EQ (seen, expected);
        EXPECT_EQ (juce::Font::getFallbackFontName(), "Some Font");
    }

    TxtLoader::releaseInstance();
}

} // namespace
} // namespace wqv
