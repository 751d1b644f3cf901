// SPDX-License-Identifier: GPL-3.0-or-later
// The parser of the text resources on odd input, and the loader of the texts.

#include "TextResource.h"
#include "TxtLoader.h"

#include <gtest/gtest.h>

#include <random>

namespace wqv
{

namespace
{

using namespace std::string_literals;
using Values = std::vector<std::string>;

Values valuesOf (std::string_view bytes, FlgTable section = FLG_STR)
{
    TextResource resource (bytes, section);
    Values values;

    for (std::string value; resource.next (value);)
        values.push_back (value);

    return values;
}

TEST (TextResources, oddInput)
{
    const auto longLine = ":STR\r\n\"" + std::string (5000, 'x') + "\"\r\n\"next\"\r\n";

    const std::tuple<const char*, std::string, Values> cases[] = {
        { "nothing", "", {} },
        { "byte-order mark", "\xEF\xBB\xBF\r\n:STR\r\n\"a\"\r\n", { "a" } },
        { "before any marker", "\"a\"\r\n", {} },
        { "comments and empty lines", ":STR\r\n# \"no\"\r\n\r\n\"a\"\r\n#\r\n\"b\"\r\n", { "a", "b" } },
        { "unknown marker", ":OTHER\r\n\"no\"\r\n:STR\r\n\"a\"\r\n:\r\n\"no\"", { "a" } },
        { "marker by part of a word", ":STRINGS\r\n\"a\"\r\n", { "a" } },
        { "section in two parts", ":STR\r\n\"a\"\r\n:LANG\r\n\"no\"\r\n:STR\r\n\"b\"\r\n", { "a", "b" } },
        { "after the end", ":STR\r\n\"a\"\r\n:EOF\r\n\"no\"\r\n:STR\r\n\"no\"\r\n", { "a" } },
        { "escapes",
          R"(:STR)"
          "\r\n"
          R"(id "\"\\\n\t\r\q" rest)",
          { "\"\\\n\t\r\\q" } },
        { "escape at the end", ":STR\r\n\"a\\", { "a\\" } },
        { "escaped closing quote", ":STR\r\n\"a\\\"", { "a\"" } },
        { "no closing quote", ":STR\r\n\"a b\r\n\"c\"\r\n", { "a b", "c" } },
        { "no quote", ":STR\r\nabc\r\n\"d\"\r\n", { "", "d" } },
        { "only line feeds", ":STR\n\"a\"\n\n\"b\"", { "a", "b" } },
        { "only carriage returns", ":STR\r\"a\"\r\"b\"\r", { "a", "b" } },
        { "line feeds, then a carriage return", ":STR\n\"lost\"\r\"a\"\r", { "a" } },
        { "zero byte in a value", ":STR\r\n\"a\0no\"\r\n\"b\"\r\n"s, { "a", "", "b" } },
        { "line of 5000 bytes", longLine, { std::string (2046, 'x'), "next" } },
    };

    for (const auto& [name, bytes, expected] : cases)
        EXPECT_EQ (valuesOf (bytes), expected) << name;

    const auto markers = ":FONT_WIN\r\n\"w\"\r\n:FONT_MAC\r\n\"m\"\r\n:FONT_LINUX\r\n\"x\"\r\n:LANG\r\n\"l\"\r\n"s;

    for (const auto& [section, value] : { std::pair (FLG_FONT_WIN, "w"),
                                          std::pair (FLG_FONT_MAC, "m"),
                                          std::pair (FLG_FONT_LINUX, "x"),
                                          std::pair (FLG_LANG, "l") })
        EXPECT_EQ (valuesOf (markers, section), Values { value });
}

TEST (TextResources, anyBytes)
{
    constexpr std::string_view alphabet ("\"\\\r\n\0:#STREOFLANG n\xC3", 20);
    std::minstd_rand random;

    for (int i = 0; i < 3000; ++i)
    {
        // No byte more than that, so that reading beyond them shows.
        std::vector<char> bytes (random() % 200);
        std::ranges::generate (bytes, [&] { return alphabet[random() % alphabet.size()]; });
        const auto values = valuesOf ({ bytes.data(), bytes.size() }, i % 2 == 0 ? FLG_STR : FLG_NONE);
        std::size_t total = 0;

        for (const auto& value : values)
            total += value.size();

        ASSERT_LE (total, bytes.size());
    }
}

TEST (TextResources, loadingFillsWhatBothSidesHave)
{
    for (const auto& [lines, length, filled] :
         { std::tuple (25, 0, 24), std::tuple (23, 0, 23), std::tuple (25, -1, 0) })
    {
        auto bytes = ":STR\r\n"s;

        for (int i = 0; i < lines; ++i)
            bytes += "\"" + std::to_string (i) + "\"\r\n";

        const auto* const data = reinterpret_cast<const std::uint8_t*> (bytes.data());
        const auto size = length < 0 ? length : static_cast<std::int32_t> (bytes.size());
        std::array<juce::String, textCount + 1> texts;
        texts.fill ("before");
        TxtLoader::Load ({ &data, &size }, FLG_STR, std::span (texts).first (textCount));

        for (int i = 0; i <= 24; ++i)
            EXPECT_EQ (texts[static_cast<std::size_t> (i)], i < filled ? juce::String (i) : "before");
    }
}

TEST (TextResources, idsAndIndexes)
{
    const auto& texts = *TxtLoader::getInstance();

    for (std::uint32_t id = 0; id <= textCount; ++id)
        EXPECT_EQ (texts.getString (id).isEmpty(), id == 0 || id == textCount) << id;

    for (std::uint32_t language = 0; language <= languageCount; ++language)
    {
        EXPECT_EQ (texts.getLang (language).isEmpty(), language == languageCount);
        EXPECT_EQ (texts.getFont (language).isEmpty(), language == languageCount);
    }

    EXPECT_EQ (texts.getString (TextId::connect).substring (0, 11), "Connect the");
    EXPECT_EQ (texts.getLang (11), juce::String::fromUTF8 ("日本語"));
    EXPECT_EQ (texts.locale(), 0U);
    EXPECT_FALSE (texts.isEnabled (languageCount));
    TxtLoader::releaseInstance();
}

} // namespace
} // namespace wqv
