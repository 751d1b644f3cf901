// SPDX-License-Identifier: GPL-3.0-or-later
// The twelve languages: what they say, whether their typefaces can draw it, and whether it fits.

#include "PanelFixture.h"
#include "PreferredLanguages.h"
#include "TextResource.h"
#include "TxtLoader.h"

#include <gtest/gtest.h>

#include <set>

namespace wqv
{
namespace
{

std::string_view bytesOf (const EmbeddedFile& file)
{
    return { reinterpret_cast<const char*> (*file.pointer), static_cast<std::size_t> (*file.length) };
}

std::vector<std::string> valuesOf (const EmbeddedFile& file, FlgTable section)
{
    TextResource resource (bytesOf (file), section);
    std::vector<std::string> values;

    for (std::string value; resource.next (value);)
        values.push_back (value);

    return values;
}

std::vector<std::string> textsOf (std::size_t language)
{
    return valuesOf (textList[language], FLG_STR);
}

const EmbeddedFamily& familyOf (std::size_t language)
{
    const auto names = valuesOf ({ &language_txt_pointer, &language_txt_length }, FLG_FONT_LINUX);
    return *std::ranges::find_if (fontList, [&] (const auto& family) { return family.name == names.at (language); });
}

/** A text's own words, and what it leaves room for: "%s", "%d" and their like. */
std::pair<std::string, std::vector<std::string>> takenApart (const std::string& text)
{
    std::string words;
    std::vector<std::string> placeholders;

    for (std::size_t i = 0; i < text.size(); ++i)
    {
        const auto end = text[i] == '%' ? text.find_first_of ("sd", i) : std::string::npos;

        if (end != std::string::npos)
        {
            placeholders.push_back (text.substr (i, end + 1 - i));
            i = end;
        }
        else
        {
            words += text[i];
        }
    }

    return { words, placeholders };
}

std::vector<std::string> placeholdersOf (const std::string& text)
{
    return takenApart (text).second;
}

void addCharacters (std::set<juce::juce_wchar>& set, const std::string& text)
{
    for (const auto character : juce::String::fromUTF8 (takenApart (text).first.c_str()))
        set.insert (character);
}

TEST (Languages, sayTheSame)
{
    constexpr std::size_t portuguese = 7;
    constexpr std::size_t korean = 10;
    const auto english = textsOf (0);
    ASSERT_EQ (english.size(), textCount);

    for (std::size_t language = 0; language < languageCount; ++language)
    {
        const auto texts = textsOf (language);
        ASSERT_EQ (texts.size(), textCount) << languageCodes[language];

        for (std::size_t id = 0; id < textCount; ++id)
        {
            SCOPED_TRACE (languageCodes[language] + (" " + std::to_string (id)));
            const auto isException = id == 17 && (language == portuguese || language == korean);
            const auto isSpaced = id == 15 && language == portuguese;
            const auto expected = isException ? std::vector<std::string>()
                                  : isSpaced  ? std::vector<std::string> { "% s" }
                                              : placeholdersOf (english[id]);

            EXPECT_EQ (texts[id].empty(), id == 0);
            EXPECT_EQ (placeholdersOf (texts[id]), expected);

            if (id <= 2)
            {
                EXPECT_EQ (texts[id], english[id]);
            }
        }
    }
}

TEST (Languages, typefacesHaveJustTheirCharacters)
{
    const auto names = valuesOf ({ &language_txt_pointer, &language_txt_length }, FLG_LANG);

    for (const auto& family : fontList)
    {
        SCOPED_TRACE (family.name);
        std::set<juce::juce_wchar> shown;
        addCharacters (shown, "0123456789-%");

        for (std::size_t language = 0; language < languageCount; ++language)
        {
            if (&familyOf (language) != &family)
                continue;

            addCharacters (shown, names.at (language));

            for (const auto& text : textsOf (language))
                addCharacters (shown, text);
        }

        std::set<juce::juce_wchar> covered;

        for (const auto character : juce::String::fromUTF8 (std::string (bytesOf (family.characters)).c_str()))
            covered.insert (character);

        EXPECT_TRUE (covered == shown);

        for (const auto& file : { family.regular, family.bold })
        {
            const auto face =
                juce::Typeface::createSystemTypefaceFor (*file.pointer, static_cast<std::size_t> (*file.length));
            const auto outlineOf = [&] (juce::juce_wchar character)
            {
                juce::Path outline;
                face->getOutlineForGlyph (static_cast<int> (character), outline);
                return outline;
            };

            const auto missing = outlineOf (0xFFFF);

            for (juce::juce_wchar character = ' '; character < 0xFFFF; character += character < 0x3000 ? 1 : 3)
                ASSERT_EQ (outlineOf (character) != missing, shown.contains (character))
                    << std::hex << static_cast<std::uint32_t> (character);

            for (const auto character : shown)
                EXPECT_NE (outlineOf (character), missing);
        }
    }
}

/** Whether text and controls of a screen keep to the window and to themselves, and nothing was cut. */
void expectFits (PanelFixture& fixture)
{
    juce::String drawn;

    for (const auto& glyph : fixture.panel->getText().getGlyphs())
    {
        EXPECT_NE (glyph.getCharacter(), juce::juce_wchar (0x2026));

        if (glyph.isWhitespace())
            continue;

        drawn += glyph.getCharacter();
        const auto box = glyph.getBounds().reduced (0.6f);
        EXPECT_TRUE (fixture.panel->getLocalBounds().toFloat().contains (box)) << drawn;

        for (auto* const child : fixture.panel->getChildren())
            EXPECT_FALSE (child->isVisible() && child->getBounds().toFloat().intersects (box)) << drawn;
    }

    EXPECT_FALSE (drawn.contains ("..."));
    EXPECT_TRUE (drawn.isNotEmpty());

    for (auto* const child : fixture.panel->getChildren())
    {
        if (auto* const button = dynamic_cast<AlineButton*> (child); button != nullptr && button->isVisible())
        {
            const juce::Font font (TxtLoader::getInstance()->getFont(), 13.0f, juce::Font::bold);
            EXPECT_LE (font.getStringWidthFloat (button->getButtonText()), static_cast<float> (button->getWidth() - 8));
        }
    }
}

/** The lines that begin where titles do. */
int titleLinesOf (const PanelFixture& fixture)
{
    std::set<int> baselines;

    for (const auto& glyph : fixture.panel->getText().getGlyphs())
        if (glyph.getLeft() < 30.0f && ! glyph.isWhitespace())
            baselines.insert (juce::roundToInt (glyph.getBaselineY()));

    return static_cast<int> (baselines.size());
}

TEST (Languages, everyScreenFits)
{
    for (std::uint32_t language = 0; language < languageCount; ++language)
    {
        for (const auto& screen : panelScreens)
        {
            SCOPED_TRACE (languageCodes[language] + std::string (" ") + screen.name);
            PanelFixture fixture (screen, languageCodes[language]);

            ASSERT_EQ (TxtLoader::getInstance()->locale(), language);
            expectFits (fixture);

            if (screen.status == UPDATER_STATUS_READY)
            {
                EXPECT_LE (titleLinesOf (fixture), language == languageIndex::russian ? 2 : 1);
            }
        }
    }
}

TEST (Languages, theFirstPreferredThatThereIs)
{
    const std::tuple<const char*, const char*, std::uint32_t> cases[] = {
        { "", "", 0 },
        { "", "de_DE.UTF-8", 2 },
        { "ko:ja", "de_DE", 10 },
        { "sv:ja_JP", "fr_FR", 11 },
        { "sv", "fr_FR@euro", 1 },
        { "", "zh_CN.GB18030", 8 },
        { "", "zh_SG", 8 },
        { "", "zh_TW.UTF-8", 9 },
        { "zh_HK", "C", 9 },
        { "zh_MO:en", "", 9 },
        { "zh", "pt_BR", 7 },
        { "C:POSIX", "C.UTF-8", 0 },
        { "", "RU", 6 },
        { "fr-with-a-long-tail:nl", "", 5 },
        { "::it", "", 4 },
    };

    for (const auto& [language, locale, expected] : cases)
    {
        TxtLoader::releaseInstance();
        TxtLoader::createInstance (preferredLanguagesFrom (language, locale));
        EXPECT_EQ (TxtLoader::getInstance()->locale(), expected) << language << ' ' << locale;
    }

    TxtLoader::releaseInstance();
}

} // namespace
} // namespace wqv
