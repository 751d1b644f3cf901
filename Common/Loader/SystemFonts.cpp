// SPDX-License-Identifier: GPL-3.0-or-later
// Looking for a font among the system's families and their styles.

#include "SystemFonts.h"

#include <algorithm>

namespace wqv
{

juce::String familyOf (const juce::String& fullName,
                       const juce::StringArray& families,
                       const std::function<juce::StringArray (const juce::String&)>& stylesOf)
{
    if (families.contains (fullName))
        return fullName;

    const auto* const found =
        std::find_if (families.begin(),
                      families.end(),
                      [&] (const juce::String& family)
                      {
                          return fullName.startsWith (family + " ")
                                 && stylesOf (family).contains (fullName.substring (family.length() + 1));
                      });

    return found != families.end() ? *found : juce::String();
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
