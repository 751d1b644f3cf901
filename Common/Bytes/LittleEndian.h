// SPDX-License-Identifier: GPL-3.0-or-later
// Little-endian numbers, read from bytes and written to them.

#pragma once

#include <cstdint>
#include <span>

namespace wqv
{

/** The number that up to four bytes hold, least significant byte first; 0 for no bytes. */
[[nodiscard]] constexpr std::uint32_t littleEndian (std::span<const std::uint8_t> bytes)
{
    std::uint32_t value = 0;

    for (auto i = bytes.size(); i-- > 0;)
        value = (value << 8) | bytes[i];

    return value;
}

/** Fills @p bytes with a number, least significant byte first; drops its bits that do not fit. */
constexpr void putLittleEndian (std::span<std::uint8_t> bytes, std::uint32_t value)
{
    for (auto& byte : bytes)
    {
        byte = static_cast<std::uint8_t> (value);
        value >>= 8;
    }
}

} // namespace wqv
