// SPDX-License-Identifier: GPL-3.0-or-later
// Draws the items of the language menu, each name in the font of its language.

#include "LangLookAndFeel.h"

#include "FittedText.h"
#include "TxtLoader.h"

namespace wqv
{
namespace
{

/** The font of the language that a text names; none, if it names none. */
juce::String fontOfLanguage (const juce::String& text)
{
    const auto& texts = *TxtLoader::getInstance();

    for (std::uint32_t i = 0; i < languageCount; ++i)
        if (text.equalsIgnoreCase (texts.getLang (i)))
            return texts.getFont (i);

    return {};
}

void drawSeparator (juce::Graphics& g, float width, float height)
{
    constexpr float inset = 5.5f;
    const auto middle = height / 2.0f;

    g.setColour (juce::Colour (0x33000000));
    g.drawLine (inset, middle, width - inset, middle);
    g.setColour (juce::Colour (0x66FFFFFF));
    g.drawLine (inset, middle + 1.0f, width - inset, middle + 1.0f);
}

void drawSubMenuArrow (juce::Graphics& g, float x, float middle, float arrowHeight)
{
    juce::Path arrow;
    arrow.addTriangle (x, middle - arrowHeight * 0.5f, x, middle + arrowHeight * 0.5f, x + arrowHeight * 0.6f, middle);
    g.fillPath (arrow);
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
                                         bool isSeparator,
                                         bool isActive,
                                         bool isHighlighted,
                                         bool isTicked,
                                         bool hasSubMenu,
                                         const juce::String& text,
                                         const juce::String& shortcutKeyText,
                                         const juce::Drawable* icon,
                                         const juce::Colour* textColour)
{
    const juce::Graphics::ScopedSaveState restored (g);
    g.setOrigin (area.getPosition());

    const auto width = area.getWidth();
    const auto height = area.getHeight();
    const auto middle = static_cast<float> (height) / 2.0f;

    if (isSeparator)
    {
        drawSeparator (g, static_cast<float> (width), static_cast<float> (height));
        return;
    }

    auto colour = textColour != nullptr ? *textColour : findColour (juce::PopupMenu::textColourId);

    if (isHighlighted)
    {
        g.setColour (juce::Colour (0xFF000040));
        g.fillRect (1, 1, width - 2, height - 2);
        colour = findColour (juce::PopupMenu::highlightedTextColourId);
    }

    g.setColour (colour);

    if (! isActive)
        g.setOpacity (0.3f);

    auto font = getPopupMenuFont();

    if (const auto name = fontOfLanguage (text); name.isNotEmpty())
        font.setTypefaceName (name);

    font.setHeight (juce::jmin (font.getHeight(), static_cast<float> (height) / 1.3f));

    const auto leftBorder = height * 5 / 4;

    if (icon != nullptr)
    {
        icon->drawWithin (g,
                          juce::Rectangle<int> (2, 1, leftBorder - 4, height - 2).toFloat(),
                          juce::RectanglePlacement::centred | juce::RectanglePlacement::onlyReduceInSize,
                          1.0f);
    }
    else if (isTicked)
    {
        const auto tick = getTickShape (1.0f);
        const auto ascent = font.getAscent();

        g.fillPath (tick,
                    tick.getTransformToScaleToFit (
                        2.0f, middle - ascent * 0.5f, static_cast<float> (leftBorder - 4), ascent, true));
    }

    drawFittedLine (g, font, text, { leftBorder, 0, width - 4 - leftBorder, height }, juce::Justification::centredLeft);

    if (shortcutKeyText.isNotEmpty())
    {
        auto shortcutFont = font;
        shortcutFont.setHeight (shortcutFont.getHeight() * 0.75f);
        shortcutFont.setHorizontalScale (0.95f);
        g.setFont (shortcutFont);
        g.drawText (
            shortcutKeyText, leftBorder, 0, width - 8 - leftBorder, height, juce::Justification::centredRight, true);
    }

    if (hasSubMenu)
        drawSubMenuArrow (g,
                          static_cast<float> (width) - static_cast<float> (height) * 0.6f,
                          middle,
                          0.6f * getPopupMenuFont().getAscent());
}

} // namespace wqv
