// SPDX-License-Identifier: GPL-3.0-or-later
// The text resources and the languages: what they say, whether their typefaces can draw it, and whether it fits.

#include "Binary.h"
#include "JuceVersions.h"
#include "PanelFixture.h"
#include "PreferredLanguages.h"
#include "SystemFonts.h"
#include "TextResource.h"
#include "TxtLoader.h"

#include <gtest/gtest.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <map>
#include <set>

namespace wqv
{
namespace
{

using namespace std::string_view_literals;

using Values = std::vector<std::string>;

Values valuesOf (std::string_view bytes, FlgTable section = FLG_STR)
{
    TextResource resource (bytes, section);
    Values values;

    for (std::string value; resource.next (value);)
        values.push_back (value);

    return values;
}

Values valuesOf (std::span<const std::uint8_t> resource, FlgTable section = FLG_STR)
{
    return valuesOf ({ reinterpret_cast<const char*> (resource.data()), resource.size() }, section);
}

/** The characters that a typeface has glyphs for. */
std::set<juce::juce_wchar> charactersOf (std::span<const std::uint8_t> file)
{
    std::set<juce::juce_wchar> characters;
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    FT_UInt glyph = 0;

    if (FT_Init_FreeType (&library) == 0
        && FT_New_Memory_Face (library, file.data(), static_cast<FT_Long> (file.size()), 0, &face) == 0)
        for (auto character = FT_Get_First_Char (face, &glyph); glyph != 0;
             character = FT_Get_Next_Char (face, character, &glyph))
            characters.insert (static_cast<juce::juce_wchar> (character));

    FT_Done_FreeType (library);
    return characters;
}

TEST (Languages, linesAndEscapes)
{
    const std::pair<std::string, Values> cases[] = {
        { "\"before any marker\"\r\n", {} },
        { "\xEF\xBB\xBF\r\n:STR\r\n\"a\"\r\n", { "a" } },
        { ":STR\r\n# \"no\"\r\n\r\n\"a\"\r\n#\r\n\"b\"\r\n", { "a", "b" } },
        { ":STR\r\n\"a\"\r\n:LANG\r\n\"no\"\r\n:STR\r\n\"b\"\r\n", { "a", "b" } },
        { ":STR\r\n\"a\"\r\n:EOF\r\n\"no\"\r\n:STR\r\n\"no\"\r\n", { "a" } },
        { ":STR\r\nid \"\\\"\\\\\\n\\t\\r\\q\" rest", { "\"\\\n\t\r\\q" } },
        { ":STR\r\n\"a\\", { "a\\" } },
        { ":STR\r\n\"a b\r\nno quote\r\n\"c\"\r\n", { "a b", "", "c" } },
        { ":STR\n\"a\"\n\n\"b\"", { "a", "b" } },
        { ":STR\r\"a\"\r\"b\"\r", { "a", "b" } },
        { ":STR\n\"lost\"\r\"a\"\r", { "a" } },
        { ":STR\r\n\"" + std::string (5000, 'x') + "\"\r\n\"next\"\r\n", { std::string (2046, 'x'), "next" } },
    };

    for (const auto& [bytes, expected] : cases)
        EXPECT_EQ (valuesOf (bytes), expected) << bytes;
}

/** Takes the places for values out of a text: "%s", "%d" and their like, where a space means nothing.
    @returns them, one behind the other */
std::string takePlaces (std::string& text)
{
    std::string places;

    for (auto begin = text.find ('%'); begin != std::string::npos; begin = text.find ('%', begin))
    {
        const auto end = text.find_first_of ("sd", begin);

        if (end == std::string::npos)
            break;

        for (const auto character : text.substr (begin, end + 1 - begin))
            if (character != ' ')
                places += character;

        text.erase (begin, end + 1 - begin);
    }

    return places;
}

TEST (Languages, sayTheSameInTypefacesThatCanDrawIt)
{
    const auto names = valuesOf (language_txt, FLG_LANG);
    ASSERT_EQ (names.size(), languageCount);
    const auto english = valuesOf (english_txt);
    ASSERT_EQ (english.size(), textCount);

    // By family. The default one is also what drawIcon draws in.
    std::map<std::string, std::string> shownBy { { fontList[0].name, "!i?" } };

    for (auto name = names.begin(); const auto& language : langList)
    {
        SCOPED_TRACE (language.code);
        auto texts = valuesOf (language.texts);
        ASSERT_EQ (texts.size(), textCount);
        auto& shown = shownBy[language.family];
        shown += "0123456789-%" + *name++;

        for (std::size_t id = 0; id < textCount; ++id)
        {
            // Portuguese and Korean have a text that leaves the model out.
            const auto isShort =
                TextId (id) == TextId::complete && (language.code == "pt"sv || language.code == "ko"sv);
            EXPECT_EQ (texts[id].empty(), id == 0);
            auto englishText = english[id];
            EXPECT_EQ (takePlaces (texts[id]), isShort ? "" : takePlaces (englishText)) << id;
            shown += texts[id];
        }
    }

    EXPECT_EQ (shownBy.size(), fontList.size());

    // A face has the characters that its languages show, and no other.
    for (const auto& family : fontList)
    {
        SCOPED_TRACE (family.name);
        std::set<juce::juce_wchar> shown;

        for (const auto character : juce::String::fromUTF8 (shownBy[family.name].c_str()))
            shown.insert (juce::jmax (character, juce::juce_wchar (' ')));

        EXPECT_TRUE (charactersOf (family.regular) == shown);
        EXPECT_TRUE (charactersOf (family.bold) == shown);
    }
}

/** Whether text and controls of a screen keep to the window and to themselves, and nothing was squeezed. */
void expectFits (PanelFixture& fixture)
{
    // Of 3.23 pixels. Only English, whose words are given, is squeezed by more, and a script with a font of its own.
    constexpr float narrowestSpace = 3.0f;
    const auto& texts = *TxtLoader::getInstance();
    const auto mayBeSqueezed = texts.locale() == 0 || texts.getFont() != fontList[0].name;

    juce::String drawn;
    std::set<int> baselines;

    for (const auto& glyph : fixture.panel->getText().getGlyphs())
    {
        EXPECT_TRUE (mayBeSqueezed || glyph.getCharacter() != ' ' || glyph.getBounds().getWidth() > narrowestSpace)
            << drawn;

        if (glyph.isWhitespace())
            continue;

        drawn += glyph.getCharacter();
        baselines.insert (juce::roundToInt (glyph.getBaselineY()));
        const auto box = glyph.getBounds().reduced (0.6f);
        EXPECT_TRUE (fixture.panel->getLocalBounds().toFloat().contains (box)) << drawn;

        for (auto* const child : fixture.panel->getChildren())
            EXPECT_FALSE (child->isVisible() && child->getBounds().toFloat().intersects (box)) << drawn;
    }

    EXPECT_TRUE (drawn.isNotEmpty());

    // Lines of the smallest font are 10 pixels apart.
    EXPECT_TRUE (std::ranges::adjacent_find (baselines, [] (int above, int below) { return below - above < 10; })
                 == baselines.end());

    for (const auto* const name : { "OK", "Cancel" })
    {
        const auto& button = fixture.find<AlineButton> (name);
        juce::GlyphArrangement caption;
        addLineOfText (caption, FontOptions (texts.getFont(), 13.0f, juce::Font::bold), button.getButtonText());
        EXPECT_LE (caption.getBoundingBox (0, -1, true).getWidth(), static_cast<float> (button.getWidth() - 8));
    }
}

TEST (Languages, everyScreenFits)
{
    for (const auto& language : langList)
    {
        for (const auto& screen : panelScreens)
        {
            SCOPED_TRACE (language.code + std::string (" ") + screen.name);
            PanelFixture fixture (screen, language.code);
            ASSERT_EQ (&langList[TxtLoader::getInstance()->locale()], &language);
            expectFits (fixture);
        }
    }
}

TEST (Languages, theFirstPreferredThatThereIs)
{
    const std::tuple<const char*, const char*, const char*> cases[] = {
        { "", "", "en" },
        { "", "de_DE.UTF-8", "de" },
        { "ko:ja", "de_DE", "ko" },
        { "sv:ja_JP", "fr_FR", "ja" },
        { "sv", "fr_FR@euro", "fr" },
        { "", "zh_SG", "zh-Hans" },
        { "", "zh_TW.UTF-8", "zh-Hant" },
        { "zh_HK", "C", "zh-Hant" },
        { "C:POSIX", "C.UTF-8", "en" },
        { "", "RU", "ru" },
        { "fr-with-a-long-tail:nl", "", "nl" },
    };

    for (const auto& [language, locale, expected] : cases)
    {
        TxtLoader::createInstance (preferredLanguagesFrom (language, locale));
        EXPECT_STREQ (langList[TxtLoader::getInstance()->locale()].code, expected) << language << ' ' << locale;
        TxtLoader::releaseInstance();
    }
}

/** This system has none of the fonts of others, since the program does not let JUCE look for any. */
TEST (Languages, aFontThatTheSystemLacksIsTheEmbeddedOne)
{
    skipFontsOfTheMachine();

    for (const auto section : { FLG_NONE, FLG_FONT_WIN, FLG_FONT_MAC })
    {
        TxtLoader::createInstance ({}, section);

        for (std::uint32_t language = 0; language < languageCount; ++language)
            EXPECT_EQ (TxtLoader::getInstance()->getFont (language), langList[language].family);

        TxtLoader::releaseInstance();
    }

    EXPECT_EQ (valuesOf (language_txt, FLG_FONT_WIN).back(), "MS UI Gothic");
    EXPECT_EQ (valuesOf (language_txt, FLG_FONT_MAC).back(), "Hiragino Maru Gothic Pro W4");
}

TEST (Languages, aFontOfTheSystemIsKnownByItsFamilyAndStyle)
{
    const juce::StringArray families { "Arial", "Hiragino Maru Gothic", "Hiragino Maru Gothic Pro", "Helvetica" };
    const juce::StringArray usual { "Regular", "Bold" };
    const auto stylesOf = [&usual] (const juce::String& family)
    { return family.endsWith ("Pro") ? juce::StringArray ("W4") : usual; };

    for (const auto& [name, family] : { std::pair ("Arial", "Arial"),
                                        std::pair ("Arial Bold", "Arial"),
                                        std::pair ("Hiragino Maru Gothic Pro W4", "Hiragino Maru Gothic Pro"),
                                        std::pair ("Hiragino Maru Gothic W4", ""),
                                        std::pair ("Helvetica Neue", ""),
                                        std::pair ("Heiti SC", "") })
        EXPECT_EQ (familyOf (name, families, stylesOf), family) << name;
}

} // namespace
} // namespace wqv
