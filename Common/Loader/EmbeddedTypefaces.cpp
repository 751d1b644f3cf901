// SPDX-License-Identifier: GPL-3.0-or-later
// Finds an embedded typeface by the name of its family, and makes it when it is first asked for.

#include "EmbeddedTypefaces.h"

#include <algorithm>
#include <cstddef>

namespace wqv
{

juce::Typeface::Ptr EmbeddedTypefaces::find (const juce::Font& font)
{
    const auto named = std::ranges::find_if (
        fontList, [name = font.getTypefaceName()] (const EmbeddedFamily& family) { return name == family.name; });
    const auto& embedded = named != fontList.end() ? *named : fontList.front();
    auto& family = families[static_cast<std::size_t> (&embedded - fontList.data())];
    auto& typeface = font.isBold() ? family.bold : family.regular;

    if (typeface == nullptr)
    {
        const auto& file = font.isBold() ? embedded.bold : embedded.regular;
        typeface = juce::Typeface::createSystemTypefaceFor (file.data(), file.size());
    }

    return typeface;
}

} // namespace wqv
