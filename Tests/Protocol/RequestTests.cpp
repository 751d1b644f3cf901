// SPDX-License-Identifier: GPL-3.0-or-later
// Every request against bytes written out by hand.

#include "Requests.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace wqv
{
namespace
{

using Bytes = std::vector<std::uint8_t>;

/** The whole report: what is named, then nothing but zeros. */
Request reportOf (const Bytes& named)
{
    Request report {};
    std::ranges::copy (named, report.begin());
    return report;
}

TEST (Requests, summaryOfEnabledAndDisabledBlocks)
{
    const upd_info_t info { .totalSize = 0x12345678, .version = 105, .blockCount = 3 };
    FirmwareBlocks blocks;
    blocks[0] = { .enabled = true, .size = 0xFF010203, .data = {}, .crc16 = 0xABCD };
    blocks[1] = { .enabled = false, .encrypted = true, .size = 0x00777777, .data = {}, .crc16 = 0x1234 };
    blocks[2] = { .id = 0x5A5A, .enabled = true, .keyIndex = 9, .size = 0x0000FF10, .data = {}, .crc16 = 0x00EF };
    blocks[3] = { .enabled = true, .size = 0x00555555, .data = {}, .crc16 = 0x5555 }; // not of the package

    const Bytes named { 0xF0, 0,    0x06, 0x90, 0x78, 0x56, 0x34, 0x13, 0x01, 0x02,
                        0x81, 0xCD, 0xAB, 0x02, 0x34, 0x12, 0x83, 0xEF, 0x00 };

    EXPECT_EQ (packageSummaryRequest (info, blocks), reportOf (named));
}

TEST (Requests, summaryOfAsManyBlocksAsThereMayBe)
{
    FirmwareBlocks blocks;
    blocks.fill ({ .enabled = true, .size = 0x200000, .data = {}, .crc16 = 0x0201 });

    const auto request = packageSummaryRequest ({ .totalSize = 0x2000000, .version = 999, .blockCount = 16 }, blocks);
    const std::span fields (request);

    // The sizes have dropped their highest bits.
    EXPECT_TRUE (std::ranges::equal (fields.first (13), Bytes { 0xF0, 0, 0x3E, 0x70, 0, 0, 0, 0, 0, 0, 0x81, 1, 2 }));
    EXPECT_TRUE (std::ranges::equal (fields.subspan (52, 7), Bytes { 0x8F, 1, 2, 0x90, 1, 2, 0 }));

    // Twelve bits of the version are sent.
    EXPECT_EQ (packageSummaryRequest ({ .version = 0x1234 }, blocks), reportOf ({ 0xF0, 0, 0x23, 0x40 }));
}

TEST (Requests, ofAFewBytes)
{
    EXPECT_EQ (enterUpdateModeRequest(), reportOf ({ 0xF4 }));
    EXPECT_EQ (blockHeaderRequest (3, 0xAB123456), reportOf ({ 0xF1, 3, 0x56, 0x34, 0x12 }));
    EXPECT_EQ (finishRequest(), reportOf ({ 0xF2 }));
}

TEST (Requests, numberOfPieces)
{
    // Of the largest one no sum wraps.
    const std::pair<std::uint32_t, std::uint32_t> cases[] { { 0, 0 },   { 1, 1 },   { 126, 1 },
                                                            { 127, 2 }, { 252, 2 }, { 0xFFFFFFFF, 34087043 } };

    for (const auto& [size, pieces] : cases)
        EXPECT_EQ (pieceCount (size), pieces) << size;
}

TEST (Requests, blockDataIsFilledUpWithZeros)
{
    Bytes data (126 + 127);
    std::iota (data.begin(), data.end(), std::uint8_t { 1 });

    Bytes named { 0xF3, 5 };
    named.insert (named.end(), data.begin() + 126, data.begin() + 252);

    EXPECT_EQ (blockDataRequest (5, data, 1), reportOf (named));
    EXPECT_EQ (blockDataRequest (5, std::span (data).first (127), 1), reportOf ({ 0xF3, 5, 127 }));
    EXPECT_EQ (blockDataRequest (16, data, 2), reportOf ({ 0xF3, 16, 253 }));
    EXPECT_EQ (blockDataRequest (1, std::span (data).first (3), 0), reportOf ({ 0xF3, 1, 1, 2, 3 }));
}

} // namespace
} // namespace wqv
