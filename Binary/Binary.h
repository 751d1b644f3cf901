// SPDX-License-Identifier: GPL-3.0-or-later
// The embedded files and the tables that index them.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace wqv
{

// Each file: its bytes and one zero byte more, its length without that byte, and a pointer to its bytes.

extern const std::uint8_t english_txt_array[];
extern const std::int32_t english_txt_length;
extern const std::uint8_t* const english_txt_pointer;

extern const std::uint8_t french_txt_array[];
extern const std::int32_t french_txt_length;
extern const std::uint8_t* const french_txt_pointer;

extern const std::uint8_t german_txt_array[];
extern const std::int32_t german_txt_length;
extern const std::uint8_t* const german_txt_pointer;

extern const std::uint8_t spanish_txt_array[];
extern const std::int32_t spanish_txt_length;
extern const std::uint8_t* const spanish_txt_pointer;

extern const std::uint8_t italian_txt_array[];
extern const std::int32_t italian_txt_length;
extern const std::uint8_t* const italian_txt_pointer;

extern const std::uint8_t dutch_txt_array[];
extern const std::int32_t dutch_txt_length;
extern const std::uint8_t* const dutch_txt_pointer;

extern const std::uint8_t russian_txt_array[];
extern const std::int32_t russian_txt_length;
extern const std::uint8_t* const russian_txt_pointer;

extern const std::uint8_t portuguese_txt_array[];
extern const std::int32_t portuguese_txt_length;
extern const std::uint8_t* const portuguese_txt_pointer;

extern const std::uint8_t simplified_chinese_txt_array[];
extern const std::int32_t simplified_chinese_txt_length;
extern const std::uint8_t* const simplified_chinese_txt_pointer;

extern const std::uint8_t traditional_chinese_txt_array[];
extern const std::int32_t traditional_chinese_txt_length;
extern const std::uint8_t* const traditional_chinese_txt_pointer;

extern const std::uint8_t korean_txt_array[];
extern const std::int32_t korean_txt_length;
extern const std::uint8_t* const korean_txt_pointer;

extern const std::uint8_t japanese_txt_array[];
extern const std::int32_t japanese_txt_length;
extern const std::uint8_t* const japanese_txt_pointer;

extern const std::uint8_t language_txt_array[];
extern const std::int32_t language_txt_length;
extern const std::uint8_t* const language_txt_pointer;

extern const std::uint8_t warning_png_array[];
extern const std::int32_t warning_png_length;
extern const std::uint8_t* const warning_png_pointer;

extern const std::uint8_t wqv_krv20_updater_128_png_array[];
extern const std::int32_t wqv_krv20_updater_128_png_length;
extern const std::uint8_t* const wqv_krv20_updater_128_png_pointer;

extern const std::uint8_t wqv_sans_regular_otf_array[];
extern const std::int32_t wqv_sans_regular_otf_length;
extern const std::uint8_t* const wqv_sans_regular_otf_pointer;

extern const std::uint8_t wqv_sans_bold_otf_array[];
extern const std::int32_t wqv_sans_bold_otf_length;
extern const std::uint8_t* const wqv_sans_bold_otf_pointer;

extern const std::uint8_t wqv_sans_sc_regular_otf_array[];
extern const std::int32_t wqv_sans_sc_regular_otf_length;
extern const std::uint8_t* const wqv_sans_sc_regular_otf_pointer;

extern const std::uint8_t wqv_sans_sc_bold_otf_array[];
extern const std::int32_t wqv_sans_sc_bold_otf_length;
extern const std::uint8_t* const wqv_sans_sc_bold_otf_pointer;

extern const std::uint8_t wqv_sans_tc_regular_otf_array[];
extern const std::int32_t wqv_sans_tc_regular_otf_length;
extern const std::uint8_t* const wqv_sans_tc_regular_otf_pointer;

extern const std::uint8_t wqv_sans_tc_bold_otf_array[];
extern const std::int32_t wqv_sans_tc_bold_otf_length;
extern const std::uint8_t* const wqv_sans_tc_bold_otf_pointer;

extern const std::uint8_t wqv_sans_kr_regular_otf_array[];
extern const std::int32_t wqv_sans_kr_regular_otf_length;
extern const std::uint8_t* const wqv_sans_kr_regular_otf_pointer;

extern const std::uint8_t wqv_sans_kr_bold_otf_array[];
extern const std::int32_t wqv_sans_kr_bold_otf_length;
extern const std::uint8_t* const wqv_sans_kr_bold_otf_pointer;

extern const std::uint8_t wqv_sans_jp_regular_otf_array[];
extern const std::int32_t wqv_sans_jp_regular_otf_length;
extern const std::uint8_t* const wqv_sans_jp_regular_otf_pointer;

extern const std::uint8_t wqv_sans_jp_bold_otf_array[];
extern const std::int32_t wqv_sans_jp_bold_otf_length;
extern const std::uint8_t* const wqv_sans_jp_bold_otf_pointer;

/** Where an embedded file is: the addresses of its pointer and of its length. */
struct EmbeddedFile
{
    const std::uint8_t* const* pointer = nullptr;
    const std::int32_t* length = nullptr;
};

/** An embedded family of typefaces. */
struct EmbeddedFamily
{
    const char* name = nullptr; ///< as in language.txt
    EmbeddedFile regular;
    EmbeddedFile bold;
};

/** The languages, in the order that is used everywhere. */
inline constexpr std::size_t languageCount = 12;

/** The texts of each language, in language order. */
extern const std::array<EmbeddedFile, languageCount> textList;

/** The pictures, by image index: the warning sign. */
extern const std::array<EmbeddedFile, 1> imageList;

/** The families; the first one also serves for any other name. */
inline constexpr std::size_t familyCount = 5;
extern const std::array<EmbeddedFamily, familyCount> fontList;

} // namespace wqv
