// SPDX-License-Identifier: GPL-3.0-or-later
// What each screen of the panel shows, and what its controls do.

#include "ImageLoader.h"
#include "PanelFixture.h"
#include "TxtLoader.h"

#include <gtest/gtest.h>

#include <map>

namespace wqv
{

namespace
{

const juce::Colour background (234, 234, 234);

struct Contents
{
    bool hasWarning;
    std::vector<std::string> controls;
    std::string text;
};

const std::vector<std::string> onlyOk { "Cancel 300 130 100 20 OK" };
const std::string connect = "Connect the USB-A terminal on your WQV-KRV20 and your computer using a USB cable. ";
const std::string restart = "1. " + connect + "2. Restart this program.";

// clang-format off
const std::map<std::string_view, Contents> contents {
    { "start", { false, { "langs 20 75 380 20", "OK 300 130 100 20 OK", "Cancel 190 130 100 20 Cancel" },
                 "Language Selections Please select a language." } },
    { "bad-package", { true, onlyOk, "There is an error in the update file." } },
    { "not-connected", { true, { "Cancel 300 130 100 20 Close" }, "Your WQV-KRV20 is not recognized. " + restart } },
    { "ready", { false, { "OK 300 130 100 20 Start", "Cancel 190 130 100 20 Close" },
                 "Updates the version of your WQV-KRV20 firmware. " + connect
                     + "Current Version: Ver. 1.00 Update Version: Ver. 1.05" } },
    { "updating", { false, { " 20 75 380 20" },
                    "Updating your WQV-KRV20 firmware. "
                    "Please wait for a few moments until the update process is complete." } },
    { "complete", { false, onlyOk, "The update of your version of the WQV-KRV20 firmware is now complete." } },
    { "error", { true, onlyOk, "An error has occurred. " + restart } },
};
// clang-format on

TEST (Screens, textsControlsAndPicture)
{
    MessageLoop keepsJuce;
    std::vector<PanelScreen> screens (std::begin (panelScreens), std::end (panelScreens));

    // The first screen does not tell that the package is bad.
    screens.push_back ({ "start", "", true, 0, 0, UPDATER_STATUS_START });

    for (const auto& screen : screens)
    {
        SCOPED_TRACE (screen.name);
        PanelFixture fixture (screen, "en");
        const auto& expected = contents.at (screen.name);
        juce::String shown;

        for (const auto& glyph : fixture.panel->getText().getGlyphs())
            shown += glyph.getCharacter();

        EXPECT_EQ (fixture.controls(), expected.controls);
        EXPECT_EQ (fixture.picture().getPixelAt (52, 47) != background, expected.hasWarning); // where the picture is
        EXPECT_EQ (shown.removeCharacters (" \n"), juce::String (expected.text).removeCharacters (" "));

        // A screen reader reads the same.
        EXPECT_EQ (fixture.panel->getDescription().removeCharacters (" \n"), shown.removeCharacters (" \n"));

        for (const auto* const child : fixture.panel->getChildren())
            EXPECT_NE (child->getTitle(), "");
    }
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
    }

    fixture.press ("Cancel");
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
    EXPECT_EQ (press (juce::KeyPress::downKey, languageCount), languageCount - 1);
    EXPECT_EQ (press (juce::KeyPress::upKey, languageCount), 0u);

    fixture.find<AlineButton> ("OK").keyPressed (juce::KeyPress (juce::KeyPress::spaceKey));
    fixture.loop.drain();
    EXPECT_EQ (fixture.panel->status(), UPDATER_STATUS_READY);
    EXPECT_EQ (press (juce::KeyPress::downKey), 0u);
}

TEST (Pictures, rowsRunUpwardsAndPixelsBackwards)
{
    // Two pixels of 3 bytes and 2 bytes to fill up the row, twice; the pixels are red, green, blue.
    std::vector<std::uint8_t> bitmap (98);
    bitmap[0] = 'B';
    bitmap[1] = 'M';
    bitmap[30] = 2;
    bitmap[38] = 2;
    bitmap[48] = 24;
    bitmap.insert (bitmap.end(), { 1, 2, 3, 4, 5, 6, 0, 0, 7, 8, 9, 10, 11, 12, 0, 0 });
    const auto picture = ImageLoader::Load (bitmap);
    EXPECT_EQ (picture.getPixelAt (0, 1), juce::Colour (1, 2, 3));
    EXPECT_EQ (picture.getPixelAt (1, 0), juce::Colour (10, 11, 12));

    // Each prefix on its own, so that reading beyond it shows.
    for (auto part = bitmap; ! part.empty();)
    {
        part.pop_back();
        part.shrink_to_fit();
        EXPECT_FALSE (ImageLoader::Load (part).isValid()) << part.size();
    }

    bitmap[33] = 0x40; // so wide that the size of a row does not fit 32 bits
    EXPECT_FALSE (ImageLoader::Load (bitmap).isValid());
}

} // namespace
} // namespace wqv
