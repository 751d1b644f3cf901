// SPDX-License-Identifier: GPL-3.0-or-later
// The program's default look: JUCE's own, with the embedded typefaces.

#pragma once

#include "EmbeddedTypefaces.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** As the default look it is asked for every font. */
class ProgramLookAndFeel final : public juce::LookAndFeel_V2
{
public:
    juce::Typeface::Ptr getTypefaceForFont (const juce::Font& font) override { return typefaces.find (font); }

private:
    EmbeddedTypefaces typefaces;
};

} // namespace wqv
