// SPDX-License-Identifier: GPL-3.0-or-later
// The look of the language menu and of its closed box.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** Draws each item that is a language's name in that language's font, so that every name can be read whatever language
    is current. Everything else is JUCE's. */
class LangLookAndFeel final : public juce::LookAndFeel_V2
{
public:
    /** The font of the current language, whose name the closed box shows. */
    juce::Font getComboBoxFont (juce::ComboBox& box) override;

    /** The name in the closed box. */
    void drawLabel (juce::Graphics& g, juce::Label& label) override;

    /** The menu opens below its box. JUCE 8.0.6 would otherwise lay it over the box and cut it at the top of the screen;
        7.0.5 puts it below anyway. */
    juce::PopupMenu::Options getOptionsForComboBoxPopupMenu (juce::ComboBox& box, juce::Label& label) override;

    /** A language's name; the menu has no other items. */
    void drawPopupMenuItem (juce::Graphics& g,
                            const juce::Rectangle<int>& area,
                            bool isSeparator,
                            bool isActive,
                            bool isHighlighted,
                            bool isTicked,
                            bool hasSubMenu,
                            const juce::String& text,
                            const juce::String& shortcutKeyText,
                            const juce::Drawable* icon,
                            const juce::Colour* textColour) override;
};

} // namespace wqv
