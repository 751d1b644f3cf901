// SPDX-License-Identifier: GPL-3.0-or-later
// Finds a typeface by the name of its family, and makes an embedded one when it is first asked for.

#include "EmbeddedTypefaces.h"

#include "JuceVersions.h"

#include <algorithm>
#include <cstddef>

namespace wqv
{

juce::Typeface::Ptr EmbeddedTypefaces::find (const juce::Font& font)
{
    const auto name = font.getTypefaceName();
    const auto named =
        std::ranges::find_if (fontList, [&name] (const EmbeddedFamily& family) { return name == family.name; });

    // A font without a name has one of JUCE's (7.0.5, 8.0.6) all the same, in angle brackets.
    if (named == fontList.end() && name.isNotEmpty() && ! name.startsWithChar ('<'))
        return juce::Typeface::createSystemTypefaceFor (font);

    const auto& embedded = named != fontList.end() ? *named : fontList.front();
    auto& family = families[static_cast<std::size_t> (&embedded - fontList.data())];
    auto& typeface = font.isBold() ? family.bold : family.regular;

    if (typeface == nullptr)
    {
        const auto& file = font.isBold() ? embedded.bold : embedded.regular;
        typeface = makeTypeface (file.data(), file.size());
    }

    return typeface;
}

} // namespace wqv
