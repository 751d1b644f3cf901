// SPDX-License-Identifier: GPL-3.0-or-later
// Typefaces out of memory, each of which knows the characters that it has.

#include "EmbeddedTypefaces.h"

#include <algorithm>
#include <cstdlib>

namespace wqv
{
namespace
{

/** The toolkit's typeface draws a box for a character that it lacks. This one refuses it, which makes the toolkit look in
    the fall-back font. */
class CoveredTypeface final : public juce::CustomTypeface
{
public:
    CoveredTypeface (const EmbeddedFile& font, juce::String charactersCovered, const juce::Font& asked)
        : original (createSystemTypefaceFor (*font.pointer, static_cast<std::size_t> (*font.length))),
          covered (std::move (charactersCovered))
    {
        setCharacteristics (asked.getTypefaceName(), asked.getTypefaceStyle(), original->getAscent(), ' ');
    }

private:
    bool loadGlyphIfPossible (juce::juce_wchar character) override
    {
        // Line feeds are laid out as characters too, and one without a width would have no place.
        const auto isControl = character < ' ';

        if (! isControl && ! covered.containsChar (character))
            return false;

        juce::Array<int> glyphNumbers;
        juce::Array<float> offsets;
        juce::Path outline;

        original->getGlyphPositions (juce::String::charToString (isControl ? ' ' : character), glyphNumbers, offsets);

        if (! isControl)
            original->getOutlineForGlyph (glyphNumbers.getFirst(), outline);

        addGlyph (character, outline, offsets[1]);
        return true;
    }

    const Ptr original;
    const juce::String covered;
};

} // namespace

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
        const auto& covered = embedded.characters;

        typeface = new CoveredTypeface (
            font.isBold() ? embedded.bold : embedded.regular,
            juce::String::fromUTF8 (reinterpret_cast<const char*> (*covered.pointer), *covered.length),
            font);
    }

    return typeface;
}

} // namespace wqv
