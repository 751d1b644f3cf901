// SPDX-License-Identifier: GPL-3.0-or-later
// The table of the languages: all that the program knows of one, but its words, its name and the fonts of other systems.

#pragma once

#include "EmbeddedFiles.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace wqv
{

/** How a language is laid out where its screens differ from those of others. Heights and gaps are in pixels. */
struct LanguageLayout
{
    float smallFontHeight = 13.0f; ///< of instructions and versions; dense characters can be read in a smaller font
    int instructionLines = 2;      ///< at most, to say how the controller is connected
    float hintGap = 16.0f;         ///< from the top of the ready screen's title to that of its hint
};

struct Language
{
    const char* code;                    ///< an identifier that begins with it, such as "pt-BR", means this language
    std::span<const std::uint8_t> texts; ///< its text resource
    const char* family;                  ///< of typefaces, in fontList
    LanguageLayout layout {};
};

/** The languages. Where a language is given by a number, that is its index here, and language.txt has the same order.
    script/make-fonts reads the rows too. */
inline constexpr auto langList = std::to_array<Language> ({
    { "en", english_txt, "WQV Sans" },
    { "fr", french_txt, "WQV Sans" },
    { "de", german_txt, "WQV Sans" },
    { "es", spanish_txt, "WQV Sans" },
    { "it", italian_txt, "WQV Sans" },
    { "nl", dutch_txt, "WQV Sans" },
    { "ru", russian_txt, "WQV Sans", { .hintGap = 31.0f } }, // its title takes two lines
    { "pt", portuguese_txt, "WQV Sans" },
    { "zh-Hans", simplified_chinese_txt, "WQV Sans SC", { .smallFontHeight = 10.0f, .instructionLines = 1 } },
    { "zh-Hant", traditional_chinese_txt, "WQV Sans TC", { .smallFontHeight = 10.0f, .instructionLines = 1 } },
    { "ko", korean_txt, "WQV Sans KR", { .instructionLines = 1 } },
    { "ja", japanese_txt, "WQV Sans JP", { .smallFontHeight = 10.0f } },
});

inline constexpr std::size_t languageCount = langList.size();

} // namespace wqv
