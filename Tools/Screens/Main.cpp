// SPDX-License-Identifier: GPL-3.0-or-later
// Draws the panel's screens and its open menu into pictures: wqv-screens FOLDER. Needs a display.

#include "ContactSheet.h"
#include "DisplayEvents.h"
#include "JuceVersions.h"
#include "PanelFixture.h"
#include "TxtLoader.h"

#include <array>
#include <iostream>
#include <tuple>

namespace wqv
{
namespace
{

/** The same subject in every language: sheets at scale 1 and 2, and the English picture by itself. */
class Series
{
public:
    /** Draws something as it is now, in the current language. */
    void add (juce::Component& subject)
    {
        const auto& texts = *TxtLoader::getInstance();

        for (std::size_t i = 0; i < sheets.size(); ++i)
        {
            const auto scale = static_cast<float> (i + 1);
            const auto picture = subject.createComponentSnapshot (subject.getLocalBounds(), true, scale)
                                     .convertedToFormat (juce::Image::RGB);
            sheets[i].add (picture, texts.getLang (texts.locale()), FontOptions (texts.getFont(), 13.0f, 0));

            if (i == 0 && texts.locale() == 0)
                english = picture;
        }
    }

    [[nodiscard]] bool write (const juce::File& folder, const juce::String& name) const
    {
        return writePicture (english, folder.getChildFile ("english").getChildFile (name + ".png"))
               && sheets[0].write (folder, name + "-1x") && sheets[1].write (folder, name + "-2x");
    }

private:
    std::array<ContactSheet, 2> sheets; ///< at scale 1 and 2
    juce::Image english;
};

/** Fills a part of the bar, as the controller does in the middle of a block, and waits until it is drawn. */
void fillBar (PanelFixture& fixture)
{
    constexpr std::uint8_t percent = 40;
    constexpr int lastFilled = 22 + 376 * percent / 100 - 1;

    fixture.runUntilSent (4);
    fixture.deliver ({ 0xF7, percent });
    fixture.loop.runUntil ([&] { return fixture.picture().getPixelAt (lastFilled, 78) != juce::Colour (8, 8, 8); });
}

/** Puts the panel on the display and gives it the keyboard, as a user has it: a button then has a line around it. */
void giveKeyboard (PanelFixture& fixture)
{
    fixture.panel->setVisible (true);
    fixture.panel->addToDesktop (juce::ComponentPeer::windowIsTemporary);

    const DisplayEvents displayEvents;
    fixture.panel->getPeer()->grabFocus();
    fixture.loop.runUntil ([&] { return fixture.panel->hasKeyboardFocus (true); });
}

bool drawScreens (const juce::File& folder)
{
    for (const auto& screen : panelScreens)
    {
        Series series;

        for (const auto& language : langList)
        {
            PanelFixture fixture (screen, language.code);

            if (screen.status == UPDATER_STATUS_UPDATING)
                fillBar (fixture);

            // A button that was pressed without a mouse stays down until it was drawn so, and for a moment more.
            std::ignore = fixture.picture();
            fixture.loop.runUntil ([&] { return ! fixture.find<AlineButton> ("OK").isDown(); });

            giveKeyboard (fixture);
            series.add (*fixture.panel);
        }

        if (! series.write (folder, screen.name))
            return false;
    }

    return true;
}

bool drawMenu (const juce::File& folder)
{
    Series series;

    for (const auto& language : langList)
    {
        PanelFixture fixture (panelScreens[0], language.code);
        fixture.panel->setVisible (true);
        fixture.panel->addToDesktop (juce::ComponentPeer::windowIsTemporary);
        fixture.find<juce::ComboBox> ("langs").showPopup();

        series.add (*juce::ModalComponentManager::getInstance()->getModalComponent (0));

        juce::PopupMenu::dismissAllActiveMenus();
        fixture.loop.runUntil ([] { return juce::Component::getNumCurrentlyModalComponents() == 0; });
    }

    return series.write (folder, "menu");
}

} // namespace
} // namespace wqv

// NOLINTNEXTLINE (bugprone-exception-escape): a fixture that cannot be made may end it
int main (int argc, char* argv[])
{
    if (argc != 2)
    {
        std::cerr << "usage: wqv-screens FOLDER\n";
        return 2;
    }

    const wqv::MessageLoop keepsJuce;

    if (juce::Desktop::getInstance().getDisplays().displays.isEmpty())
    {
        std::cerr << "wqv-screens: no display\n";
        return 1;
    }

    const auto folder = juce::File::getCurrentWorkingDirectory().getChildFile (juce::String::fromUTF8 (argv[1]));
    folder.getChildFile ("english").createDirectory();
    return wqv::drawScreens (folder) && wqv::drawMenu (folder) ? 0 : 1;
}
