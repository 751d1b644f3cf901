// SPDX-License-Identifier: GPL-3.0-or-later
// The look of the language menu.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** Draws each item that is a language's name in that language's font, so that every name can be read whatever language
    is current. Everything else is the toolkit's. */
class LangLookAndFeel final : public juce::LookAndFeel_V2
{
public:
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
