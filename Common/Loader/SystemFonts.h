// SPDX-License-Identifier: GPL-3.0-or-later
// Which of the fonts that the language table names the system has.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

namespace wqv
{

/** The family for a font's full name: that of this name, or one with a style of this name, as "Noto Sans Bold" is
    "Noto Sans".
    @param stylesOf  names the styles of a family
    @returns an empty text if it is in none of the families */
[[nodiscard]] juce::String familyOf (const juce::String& fullName,
                                     const juce::StringArray& families,
                                     const std::function<juce::StringArray (const juce::String&)>& stylesOf);

/** The system's family for a font's full name, else, and without a name, the embedded one. Only with a name is the system
    asked for its fonts. */
[[nodiscard]] juce::String familyInReach (const juce::String& fullName, const juce::String& embedded);

} // namespace wqv
