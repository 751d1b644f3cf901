// SPDX-License-Identifier: GPL-3.0-or-later
// What each screen of the panel shows, and where.

#include "DefaultLook.h"
#include "ImageLoader.h"
#include "PanelFixture.h"
#include "TxtLoader.h"

#include <gtest/gtest.h>

#include <map>

namespace wqv
{

namespace
{

using Glyphs = std::vector<juce::PositionedGlyph>;

Glyphs glyphsOf (const ScreenText& text)
{
    return { text.getGlyphs().begin(), text.getGlyphs().end() };
}

constexpr float belowTheLast = -1.0f;

/** One block of text: its own words, where its first line begins, and its font. */
struct Block
{
    juce::String text;
    float x = 0.0f;
    float y = 0.0f; ///< or belowTheLast: 5 below the block before
    bool isBold = false;
};

/** Looks for the blocks in the order of the glyphs. White space and the breaking of lines are left out of it. */
void expectBlocks (const Glyphs& glyphs, const std::vector<Block>& blocks)
{
    const auto font = TxtLoader::getInstance()->getFont();
    auto lastBottom = 0.0f;
    std::size_t next = 0;
    const auto skipSpace = [&]
    {
        while (next < glyphs.size() && juce::CharacterFunctions::isWhitespace (glyphs[next].getCharacter()))
            ++next;
    };

    for (const auto& block : blocks)
    {
        SCOPED_TRACE (block.text.toStdString());
        auto width = 0.0f;
        auto styleWidth = std::array { 0.0f, 0.0f };
        auto isFirst = true;
        const auto y = block.y == belowTheLast ? lastBottom + 5.0f : block.y;

        for (const auto character : block.text.removeCharacters (" \n"))
        {
            skipSpace();
            ASSERT_LT (next, glyphs.size());
            const auto& glyph = glyphs[next++];
            ASSERT_EQ (glyph.getCharacter(), character);

            if (std::exchange (isFirst, false))
            {
                EXPECT_NEAR (glyph.getLeft(), block.x, 0.01f);
                EXPECT_NEAR (glyph.getTop(), y, 0.01f);
            }

            EXPECT_NEAR (glyph.getBottom() - glyph.getTop(), 13.0f, 0.01f);
            EXPECT_LE (glyph.getRight(), 400.01f);

            for (const auto style : { juce::Font::plain, juce::Font::bold })
                styleWidth[static_cast<std::size_t> (style)] +=
                    juce::Font (font, 13.0f, style).getStringWidthFloat (juce::String::charToString (character));

            width += glyph.getRight() - glyph.getLeft();
            lastBottom = glyph.getBottom();
        }

        // Plain text may be squeezed; bold text never has to be.
        EXPECT_EQ (width > (styleWidth[0] + styleWidth[1]) / 2.0f, block.isBold);
    }

    skipSpace();
    EXPECT_EQ (next, glyphs.size());
}

/** The square beside the text as it is with the picture. */
bool showsWarning (const juce::Image& panel)
{
    const juce::Rectangle<int> square (20, 15, 64, 64);
    juce::Image expected (juce::Image::RGB, panel.getWidth(), panel.getHeight(), true);
    juce::Graphics g (expected);
    g.fillAll (juce::Colour (234, 234, 234));
    g.drawImage (ImageLoader::getInstance()->getImage (0), square.toFloat());

    for (int y = square.getY(); y < square.getBottom(); ++y)
        for (int x = square.getX(); x < square.getRight(); ++x)
            if (panel.getPixelAt (x, y) != expected.getPixelAt (x, y))
                return false;

    return true;
}

struct Contents
{
    bool hasWarning;
    std::vector<std::string> controls;
    std::vector<Block> blocks;
};

const std::vector<std::string> onlyOk { "Cancel 300 130 100 20 OK" };
const std::string connectText = "Connect the USB-A terminal on your WQV-KRV20 and your computer using a USB cable.";

// clang-format off
const std::map<std::string_view, Contents> contents {
    { "start", { false, { "langs 20 75 380 20", "OK 300 130 100 20 OK", "Cancel 190 130 100 20 Cancel" },
      { { "Language Selections", 20, 20, true },
        { "Please select a language.", 40, 46 } } } },
    { "bad-package", { true, onlyOk,
      { { "There is an error in the update file.", 105, 20 } } } },
    { "not-connected", { true, { "Cancel 300 130 100 20 Close" },
      { { "Your WQV-KRV20 is not recognized.", 105, 20, true },
        { "1. " + connectText, 105, 36 },
        { "2. Restart this program.", 105, 65 } } } },
    { "ready", { false, { "OK 300 130 100 20 Start", "Cancel 190 130 100 20 Close" },
      { { "Updates the version of your WQV-KRV20 firmware.", 20, 20, true },
        { connectText, 40, 36 },
        { "Current Version: Ver. 1.00 Update Version: Ver. 1.05", 60, belowTheLast } } } },
    { "updating", { false, { " 20 75 380 20" },
      { { "Updating your WQV-KRV20 firmware.", 20, 20, true },
        { "Please wait for a few moments until the update process is complete.", 40, 46 } } } },
    { "complete", { false, onlyOk,
      { { "The update of your version of the WQV-KRV20 firmware is now complete.", 20, 20 } } } },
    { "error", { true, onlyOk,
      { { "An error has occurred.", 105, 20 },
        { "1. " + connectText, 105, 36 },
        { "2. Restart this program.", 105, 65 } } } },
};
// clang-format on

TEST (Screens, textsControlsAndPicture)
{
    MessageLoop keepsTheToolkit;
    std::vector<PanelScreen> screens (std::begin (panelScreens), std::end (panelScreens));

    // The first screen does not tell that the package is bad.
    screens.push_back ({ "start", "", true, 0, 0, UPDATER_STATUS_START });

    for (const auto& screen : screens)
    {
        SCOPED_TRACE (screen.name);
        PanelFixture fixture (screen, "en");
        const auto& expected = contents.at (screen.name);

        EXPECT_EQ (fixture.controls(), expected.controls);
        EXPECT_EQ (showsWarning (fixture.picture()), expected.hasWarning);
        expectBlocks (glyphsOf (fixture.panel->getText()), expected.blocks);
        EXPECT_EQ (fixture.picture().getPixelAt (0, 0), juce::Colour (234, 234, 234));
    }
}

/** The first glyph of the line that begins nearest to @p y. */
const juce::PositionedGlyph& glyphAt (const Glyphs& glyphs, float y)
{
    return *std::ranges::min_element (glyphs, {}, [y] (const auto& glyph) { return std::abs (glyph.getTop() - y); });
}

TEST (Screens, linesThatTheLanguageMoves)
{
    MessageLoop loop;
    DefaultLook defaultLook;
    auto& texts = *TxtLoader::getInstance();

    for (std::uint32_t language = 0; language < languageCount; ++language)
    {
        SCOPED_TRACE ("language " + std::to_string (language));
        texts.setLocale (language);
        const auto isSmall = language == 8 || language == 9 || language == 11;
        const auto height = isSmall ? 10.0f : 13.0f;
        const auto lines = language >= 8 && language <= 10 ? 1.0f : 2.0f;
        ScreenText text (420, 170);
        const auto expectLine = [&] (float x, float y, float fontHeight)
        {
            const auto glyph = glyphAt (glyphsOf (text), y);
            EXPECT_NEAR (glyph.getLeft(), x, 0.01f);
            EXPECT_NEAR (glyph.getTop(), y, 0.01f);
            EXPECT_NEAR (glyph.getBottom() - glyph.getTop(), fontHeight, 0.01f);
        };

        text.layOut ({ .status = UPDATER_STATUS_NOT_CONNECTED, .packageValid = true });
        expectLine (105, 20, 13);
        expectLine (105, 36, height);
        expectLine (105, 36 + lines * height + 3, height);

        text.layOut ({ .status = UPDATER_STATUS_READY, .packageValid = true });
        expectLine (40, language == 6 ? 51.0f : 36.0f, height);
        const auto last = glyphsOf (text).back();
        expectLine (60, last.getTop() - height, height);
        expectLine (60, last.getTop(), height);
    }

    TxtLoader::releaseInstance();
}

TEST (Screens, versionsAndFormats)
{
    MessageLoop loop;
    DefaultLook defaultLook;
    ScreenText text (420, 170);
    text.layOut ({ UPDATER_STATUS_READY, true, -1, 1000 });
    juce::String all;

    for (const auto& glyph : glyphsOf (text))
        all << juce::String::charToString (glyph.getCharacter()).trim();

    EXPECT_TRUE (all.endsWith ("CurrentVersion:Ver.0.-1UpdateVersion:Ver.10.00")) << all;

    // A text may have fewer places to fill than it is given words.
    const juce::String noPlace ("100");
    EXPECT_EQ (formatted (noPlace.toRawUTF8(), "word", 7), noPlace);
    EXPECT_EQ (formatted ("%s, %d", "é", 7), juce::String::fromUTF8 ("é, 7"));
    TxtLoader::releaseInstance();
}

TEST (Panel, barFollowsTheUpdater)
{
    PanelFixture fixture ("silent@4");
    fixture.plugIn();
    fixture.open();
    fixture.press ("OK");
    fixture.press ("OK");
    fixture.runUntilSent (4);
    fixture.deliver ({ 0xF7, 5 });

    // It begins 20 and 2 from the left; 5 % of 376 are 18.8.
    const auto isFilled = [&] (int x) { return fixture.picture().getPixelAt (x, 78) != juce::Colour (8, 8, 8); };
    fixture.loop.runUntil ([&] { return isFilled (22 + 17); });

    EXPECT_TRUE (isFilled (22));
    EXPECT_FALSE (isFilled (21));
    EXPECT_FALSE (isFilled (22 + 19));
}

TEST (Panel, windowTitleAndLanguages)
{
    PanelFixture fixture;
    juce::Component window ("before");
    fixture.open();
    window.setVisible (true);
    window.addAndMakeVisible (*fixture.panel);

    auto& texts = *TxtLoader::getInstance();
    EXPECT_EQ (window.getName(), texts.getString (TextId::windowTitle));

    auto& langs = fixture.find<juce::ComboBox> ("langs");
    EXPECT_EQ (langs.getSelectedId(), 1);
    EXPECT_FALSE (langs.getWantsKeyboardFocus());

    for (int i = 0; i < langs.getNumItems(); ++i)
    {
        const auto language = static_cast<std::uint32_t> (langs.getItemId (i) - 1);
        EXPECT_TRUE (texts.isEnabled (language));
        EXPECT_EQ (langs.getItemText (i), texts.getLang (language));

        // Also for the one that is chosen already, everything is shown anew.
        langs.setSelectedId (0, juce::dontSendNotification);
        langs.setSelectedId (langs.getItemId (i), juce::sendNotificationSync);

        EXPECT_EQ (texts.locale(), language);
        EXPECT_EQ (window.getName(), texts.getString (TextId::windowTitle));
        EXPECT_EQ (fixture.find<AlineButton> ("Cancel").getButtonText(), texts.getString (TextId::cancel));
        EXPECT_EQ (juce::Font::getFallbackFontName(), texts.getFont (language));
    }

    fixture.press ("Cancel");
    EXPECT_FALSE (window.isVisible());
    EXPECT_EQ (fixture.quits, 1);
}

TEST (Panel, upAndDownChooseTheLanguageOfTheFirstScreen)
{
    PanelFixture fixture;
    fixture.plugIn();
    fixture.open();
    const auto& texts = *TxtLoader::getInstance();
    const auto press = [&] (int key, int times = 1)
    {
        while (times-- > 0)
            fixture.panel->keyPressed (juce::KeyPress (key));

        return texts.locale();
    };

    EXPECT_EQ (press (juce::KeyPress::upKey), 0u);
    EXPECT_EQ (press (juce::KeyPress::downKey, 2), 2u);
    EXPECT_EQ (press (juce::KeyPress::downKey, languageCount), languageCount - 1);
    EXPECT_EQ (press (juce::KeyPress::upKey, languageCount), 0u);

    fixture.find<AlineButton> ("OK").keyPressed (juce::KeyPress (juce::KeyPress::spaceKey));
    fixture.loop.drain();
    EXPECT_EQ (fixture.panel->status(), UPDATER_STATUS_READY);
    EXPECT_EQ (press (juce::KeyPress::downKey), 0u);
}

TEST (Panel, aScreenReaderReadsWhatIsShown)
{
    for (const auto& screen : panelScreens)
    {
        SCOPED_TRACE (screen.name);
        PanelFixture fixture (screen, "fr");
        juce::String shown;

        for (const auto& glyph : glyphsOf (fixture.panel->getText()))
            shown += glyph.getCharacter();

        EXPECT_EQ (fixture.panel->getDescription().removeCharacters (" \n"), shown.removeCharacters (" \n"));

        for (const auto* const child : fixture.panel->getChildren())
            EXPECT_NE (child->getTitle(), "");
    }
}

} // namespace
} // namespace wqv
