// SPDX-License-Identifier: GPL-3.0-or-later
// The value of a hexadecimal digit: the ids of blocks are written in these.

#pragma once

#include <cstdint>

namespace wqv
{

/** The value of one ASCII hexadecimal digit of either case, in any locale; 0 for every other byte. */
[[nodiscard]] constexpr std::uint8_t ConvertAsciiToHex (std::uint8_t character)
{
    const auto valueFrom = [character] (char first, int value)
    { return static_cast<std::uint8_t> (character - first + value); };

    if (character >= '0' && character <= '9')
        return valueFrom ('0', 0);

    if (character >= 'A' && character <= 'F')
        return valueFrom ('A', 10);

    if (character >= 'a' && character <= 'f')
        return valueFrom ('a', 10);

    return 0;
}

} // namespace wqv
