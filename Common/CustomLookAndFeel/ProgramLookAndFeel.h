// SPDX-License-Identifier: GPL-3.0-or-later
// The look of everything that has no look of its own: it gives all texts their typefaces.

#pragma once

#include "EmbeddedTypefaces.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** JUCE's look with the embedded typefaces. JUCE asks the default look for the typeface of every font. */
class ProgramLookAndFeel final : public juce::LookAndFeel_V2
{
public:
    juce::Typeface::Ptr getTypefaceForFont (const juce::Font& font) override { return typefaces.find (font); }

private:
    EmbeddedTypefaces typefaces;
};

} // namespace wqv
