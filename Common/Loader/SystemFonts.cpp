// SPDX-License-Identifier: GPL-3.0-or-later
// Looking for a font among the system's families and their styles.

#include "SystemFonts.h"

namespace wqv
{

juce::String familyOf (const juce::String& fullName,
                       const juce::StringArray& families,
                       const std::function<juce::StringArray (const juce::String&)>& stylesOf)
{
    if (families.contains (fullName))
        return fullName;

    for (const auto& family : families)
        if (fullName.startsWith (family + " ") && stylesOf (family).contains (fullName.substring (family.length() + 1)))
            return family;

    return {};
}

juce::String familyInReach (const juce::String& fullName, const juce::String& embedded)
{
    if (fullName.isEmpty())
        return embedded;

    static const auto families = juce::Font::findAllTypefaceNames();
    const auto family = familyOf (fullName, families, juce::Font::findAllTypefaceStyles);
    return family.isNotEmpty() ? family : embedded;
}

} // namespace wqv
