// SPDX-License-Identifier: GPL-3.0-or-later
// The checksums against published check values and against their definitions, bit by bit.

#include "Checksums.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace wqv
{
namespace
{

using Bytes = std::vector<std::uint8_t>;

const Bytes checkMessage { '1', '2', '3', '4', '5', '6', '7', '8', '9' };

/** A CRC of up to 32 bits, most significant bit first, one bit at a time. */
std::uint32_t bitwise (const Bytes& data, unsigned width, std::uint32_t polynomial, std::uint32_t start)
{
    const auto mask = 0xFFFFFFFFu >> (32 - width);
    auto crc = start;

    for (const auto byte : data)
        for (int bit = 7; bit >= 0; --bit)
        {
            const auto feedback = ((crc >> (width - 1)) ^ (std::uint32_t { byte } >> bit)) & 1;
            crc = ((crc << 1) ^ (feedback != 0 ? polynomial : 0)) & mask;
        }

    return crc;
}

TEST (Checksums, havePublishedValues)
{
    EXPECT_EQ (crcTable[255], 0xB1F740B4u);
    EXPECT_EQ (calcCRC32 (checkMessage), 0x0376E6E7u);
    EXPECT_EQ (calcCRC16 (checkMessage), 0x31C3u);

    auto sealed = checkMessage;
    sealed.insert (sealed.end(), { 0x03, 0x76, 0xE6, 0xE7 });
    EXPECT_EQ (calcCRC32 (sealed), 0u);
    EXPECT_EQ (calcCRC32 ({}), 0u);
    EXPECT_EQ (calcCRC16 ({}), 0u);
}

TEST (Checksums, areThoseOfTheDefinitionAtEveryLengthAndInPieces)
{
    for (std::size_t length = 1; length <= 40; ++length)
    {
        Bytes data (length);
        std::iota (data.begin(), data.end(), static_cast<std::uint8_t> (0xE9 + 5 * length));

        const auto expected = bitwise (data, 32, 0x04C11DB7, 0xFFFFFFFF);
        EXPECT_EQ (calcCRC32 (data), expected) << length;
        EXPECT_EQ (calcCRC16 (data), bitwise (data, 16, 0x1021, 0)) << length;

        for (std::size_t cut = 1; cut <= length; ++cut)
        {
            const auto bytes = std::span (data);
            EXPECT_EQ (updateCRC32 (calcCRC32 (bytes.first (cut)), bytes.subspan (cut)), expected)
                << length << ' ' << cut;
        }
    }
}

} // namespace
} // namespace wqv
