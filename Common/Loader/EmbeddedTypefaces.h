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
    /** The typeface for a font: of its family if that is an embedded one or, for a language, the system's; else of the
        Latin one; bold or regular. */
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
