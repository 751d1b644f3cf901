// SPDX-License-Identifier: GPL-3.0-or-later
// How the language menu and its closed box are drawn.

#include "LangLookAndFeel.h"

#include "FittedText.h"
#include "TxtLoader.h"

namespace wqv
{
namespace
{

/** The font of the language with this name. */
juce::String fontOf (const juce::String& language)
{
    const auto& texts = *TxtLoader::getInstance();

    for (std::uint32_t i = 0; i < languageCount; ++i)
        if (language.equalsIgnoreCase (texts.getLang (i)))
            return texts.getFont (i);

    return texts.getFont();
}

} // namespace

juce::Font LangLookAndFeel::getComboBoxFont (juce::ComboBox& box)
{
    auto font = LookAndFeel_V2::getComboBoxFont (box);
    font.setTypefaceName (TxtLoader::getInstance()->getFont());
    return font;
}

void LangLookAndFeel::drawLabel (juce::Graphics& g, juce::Label& label)
{
    g.setColour (label.findColour (juce::Label::textColourId));
    drawFittedLine (g,
                    getLabelFont (label),
                    label.getText(),
                    getLabelBorderSize (label).subtractedFrom (label.getLocalBounds()),
                    label.getJustificationType());
}

juce::PopupMenu::Options LangLookAndFeel::getOptionsForComboBoxPopupMenu (juce::ComboBox& box, juce::Label& label)
{
    constexpr int none = 0;
    return LookAndFeel_V2::getOptionsForComboBoxPopupMenu (box, label).withItemThatMustBeVisible (none);
}

void LangLookAndFeel::drawPopupMenuItem (juce::Graphics& g,
                                         const juce::Rectangle<int>& area,
                                         bool /*isSeparator*/,
                                         bool /*isActive*/,
                                         bool isHighlighted,
                                         bool isTicked,
                                         bool /*hasSubMenu*/,
                                         const juce::String& text,
                                         const juce::String& /*shortcutKeyText*/,
                                         const juce::Drawable* /*icon*/,
                                         const juce::Colour* /*textColour*/)
{
    if (isHighlighted)
    {
        g.setColour (juce::Colour (0xFF000040));
        g.fillRect (area.reduced (1));
    }

    g.setColour (findColour (isHighlighted ? juce::PopupMenu::highlightedTextColourId : juce::PopupMenu::textColourId));

    auto font = getPopupMenuFont();
    font.setTypefaceName (fontOf (text));
    font.setHeight (juce::jmin (font.getHeight(), static_cast<float> (area.getHeight()) / 1.3f));

    const auto leftBorder = area.getHeight() * 5 / 4;

    if (isTicked)
    {
        const auto tick = getTickShape (1.0f);
        const auto place = area.withWidth (leftBorder - 4).translated (2, 0).toFloat();
        g.fillPath (
            tick,
            tick.getTransformToScaleToFit (place.withSizeKeepingCentre (place.getWidth(), font.getAscent()), true));
    }

    drawFittedLine (
        g, font, text, area.withTrimmedLeft (leftBorder).withTrimmedRight (4), juce::Justification::centredLeft);
}

} // namespace wqv
