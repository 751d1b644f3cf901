// SPDX-License-Identifier: GPL-3.0-or-later
// Writes as \xNN every byte that is not part of a printable character.

#include "EscapedText.h"

#include <array>
#include <cstdio>

namespace wqv
{
namespace
{

bool isPlain (std::uint8_t byte)
{
    return byte >= 0x20 && byte < 0x7F && byte != '\\';
}

/** Whether a character is not seen, but changes how those around it are: their direction, or where a line ends. */
bool isFormatting (std::uint32_t character)
{
    return (character >= 0x200B && character <= 0x200F) || (character >= 0x2028 && character <= 0x202E)
           || (character >= 0x2060 && character <= 0x206F) || character == 0xFEFF;
}

/** The bytes of the printable character that @p text, which is not empty, begins with; 0 when there is none. */
std::size_t printableLength (std::string_view text)
{
    const auto first = static_cast<std::uint8_t> (text.front());

    if (first < 0x80)
        return isPlain (first) ? 1 : 0;

    const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;

    if (first < 0xC0 || first >= 0xF8 || text.size() < length)
        return 0;

    std::uint32_t character = first & (0x7Fu >> length);

    for (const auto next : text.substr (1, length - 1))
    {
        if ((static_cast<std::uint8_t> (next) & 0xC0) != 0x80)
            return 0;

        character = (character << 6) | (static_cast<std::uint8_t> (next) & 0x3F);
    }

    // Below lie the control characters up to 9F and what a shorter form would hold.
    constexpr std::array<std::uint32_t, 3> lowest { 0xA0, 0x800, 0x10000 };
    const auto surrogate = character >= 0xD800 && character < 0xE000;
    return character >= lowest[length - 2] && character < 0x110000 && ! surrogate && ! isFormatting (character) ? length
                                                                                                                : 0;
}

std::string escape (std::uint8_t byte)
{
    std::array<char, 5> code {};
    std::snprintf (code.data(), code.size(), "\\x%02X", unsigned { byte });
    return code.data();
}

} // namespace

std::string escapedBytes (std::span<const std::uint8_t> bytes)
{
    std::string result;

    for (const auto byte : bytes)
        result += isPlain (byte) ? std::string (1, static_cast<char> (byte)) : escape (byte);

    return result;
}

std::string escapedText (std::string_view text)
{
    std::string result;

    while (! text.empty())
    {
        const auto length = printableLength (text);
        result +=
            length > 0 ? std::string (text.substr (0, length)) : escape (static_cast<std::uint8_t> (text.front()));
        text.remove_prefix (length > 0 ? length : 1);
    }

    return result;
}

} // namespace wqv
