// SPDX-License-Identifier: GPL-3.0-or-later
// The CRC-32 and CRC-16 that protect an update package.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace wqv
{

/** The byte table of a most-significant-bit-first CRC in a 32-bit register: entry i is the remainder of byte i. */
using CrcTable = std::array<std::uint32_t, 256>;

/** Builds the table of CRC-32/MPEG-2 (polynomial 0x04C11DB7, no bit reflection): entry 1 is 0x04C11DB7 and entry 255
    is 0xB1F740B4. */
[[nodiscard]] constexpr CrcTable initCRC32 (std::uint32_t polynomial = 0x04C11DB7)
{
    CrcTable table {};

    for (std::uint32_t i = 0; i < table.size(); ++i)
    {
        auto remainder = i << 24;

        for (int bit = 0; bit < 8; ++bit)
            remainder = (remainder << 1) ^ ((remainder >> 31) * polynomial);

        table[i] = remainder;
    }

    return table;
}

/** The CRC-32 table. It is part of the package format too: a block's descrambling key takes one entry of it. */
inline constexpr CrcTable crcTable = initCRC32();

/** CRC-32/MPEG-2 of some bytes: start value 0xFFFFFFFF, most significant bit first, no final XOR.

    The check value over the nine ASCII bytes "123456789" is 0x0376E6E7. Run over a message and its own CRC, most
    significant byte first, the result is 0.

    @returns 0 for a null pointer; 0xFFFFFFFF for no bytes at any other address
*/
[[nodiscard]] std::uint32_t calcCRC32 (std::span<const std::uint8_t> data);

/** Goes on with a CRC-32 over further bytes: updateCRC32 (calcCRC32 (a), b) is the CRC-32 of a followed by b.
    No bytes leave @p crc as it is. */
[[nodiscard]] std::uint32_t updateCRC32 (std::uint32_t crc, std::span<const std::uint8_t> data);

/** CRC-16/XMODEM of some bytes: polynomial 0x1021, start value 0, most significant bit first, no final XOR.

    The check value over "123456789" is 0x31C3. No bytes give 0. The upper half of the result is 0.
*/
[[nodiscard]] std::uint32_t calcCRC16 (std::span<const std::uint8_t> data);

} // namespace wqv
