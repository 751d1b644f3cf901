// SPDX-License-Identifier: GPL-3.0-or-later
// The typefaces that are embedded in the program.

#pragma once

#include "Binary.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <array>

namespace wqv
{

/** Finds the embedded typefaces by the names in fontList. No font file of the machine is read, unless a language has a font
    of the system: so the program looks the same on every machine of a system. Message thread only. */
class EmbeddedTypefaces
{
public:
    /** The typeface for a font, bold or regular: a name in fontList gives the embedded one, any other name the system's, no
        name the first of fontList. */
    [[nodiscard]] juce::Typeface::Ptr find (const juce::Font& font);

private:
    struct Family
    {
        juce::Typeface::Ptr regular;
        juce::Typeface::Ptr bold;
    };

    /** Made when they are first asked for: most runs need two of them. */
    std::array<Family, fontList.size()> families;
};

} // namespace wqv
