// SPDX-License-Identifier: GPL-3.0-or-later
// CRC-32 and CRC-16 by table, eight bytes a step, since a package is checked before the window appears.

#include "Checksums.h"

namespace wqv
{
namespace
{

constexpr std::size_t stepSize = 8;

/** tables[k][i] is the remainder of byte i followed by k zero bytes. */
using SlicedTables = std::array<CrcTable, stepSize>;

constexpr SlicedTables sliced (const CrcTable& table)
{
    SlicedTables tables { table };

    for (std::size_t k = 1; k < stepSize; ++k)
        for (std::size_t i = 0; i < table.size(); ++i)
            tables[k][i] = (tables[k - 1][i] << 8) ^ table[tables[k - 1][i] >> 24];

    return tables;
}

constexpr SlicedTables crc32Tables = sliced (crcTable);

/** CRC-16/XMODEM runs in the upper half of the same register, so one loop serves both. */
constexpr SlicedTables crc16Tables = sliced (initCRC32 (0x10210000));

std::uint32_t update (const SlicedTables& tables, std::uint32_t crc, std::span<const std::uint8_t> data)
{
    for (; data.size() >= stepSize; data = data.subspan (stepSize))
    {
        std::uint32_t next = 0;

        for (std::size_t i = 0; i < 4; ++i)
        {
            const auto top = static_cast<std::uint8_t> (crc >> (24 - 8 * i));
            next ^= tables[7 - i][data[i] ^ top] ^ tables[3 - i][data[4 + i]];
        }

        crc = next;
    }

    for (const auto byte : data)
        crc = (crc << 8) ^ tables[0][byte ^ (crc >> 24)];

    return crc;
}

} // namespace

std::uint32_t calcCRC32 (std::span<const std::uint8_t> data)
{
    return data.data() == nullptr ? 0 : updateCRC32 (0xFFFFFFFF, data);
}

std::uint32_t updateCRC32 (std::uint32_t crc, std::span<const std::uint8_t> data)
{
    return update (crc32Tables, crc, data);
}

std::uint32_t calcCRC16 (std::span<const std::uint8_t> data)
{
    return update (crc16Tables, 0, data) >> 16;
}

} // namespace wqv
