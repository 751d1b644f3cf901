// SPDX-License-Identifier: GPL-3.0-or-later
// Typefaces out of memory.

#include "EmbeddedTypefaces.h"

#include <algorithm>
#include <cstdlib>

namespace wqv
{

void EmbeddedTypefaces::skipFontsOfTheMachine()
{
    // A folder that has no fonts.
    setenv ("JUCE_FONT_PATH", "/dev/null", 1); // NOLINT (concurrency-mt-unsafe): no other thread reads it yet
}

juce::Typeface::Ptr EmbeddedTypefaces::find (const juce::Font& font)
{
    const auto named = std::ranges::find_if (
        fontList, [&] (const EmbeddedFamily& family) { return font.getTypefaceName() == family.name; });
    const auto& embedded = named != fontList.end() ? *named : fontList.front();
    auto& family = families[static_cast<std::size_t> (&embedded - fontList.data())];
    auto& typeface = font.isBold() ? family.bold : family.regular;

    if (typeface == nullptr)
    {
        const auto& file = font.isBold() ? embedded.bold : embedded.regular;
        typeface = juce::Typeface::createSystemTypefaceFor (*file.pointer, static_cast<std::size_t> (*file.length));
    }

    return typeface;
}

} // namespace wqv
