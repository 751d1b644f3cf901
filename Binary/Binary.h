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

extern const std::uint8_t language_txt_array[];
extern const std::int32_t language_txt_length;
extern const std::uint8_t* const language_txt_pointer;

extern const std::uint8_t warning_png_array[];
extern const std::int32_t warning_png_length;
extern const std::uint8_t* const warning_png_pointer;

/** Where an embedded file is: the addresses of its pointer and of its length. Both are null for a file that the program
    does not have. */
struct EmbeddedFile
{
    const std::uint8_t* const* pointer = nullptr;
    const std::int32_t* length = nullptr;
};

/** The languages, in the order that is used everywhere. */
inline constexpr std::size_t languageCount = 12;

/** The texts of each language, in language order. */
extern const std::array<EmbeddedFile, languageCount> textList;

/** The pictures, by image index: the warning sign. */
extern const std::array<EmbeddedFile, 1> imageList;

} // namespace wqv
