// SPDX-License-Identifier: GPL-3.0-or-later
// Well-formed packages: the writer and the loader against bytes written out by hand, and against each other.

#include "GoldenPackage.h"
#include "UpdatePackage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace wqv
{
namespace
{

TEST (PackageFormat, writerGivesTheGoldenBytes)
{
    EXPECT_EQ (writePackage (goldenDescription()), Bytes (goldenPackage.begin(), goldenPackage.end()));
}

TEST (PackageFormat, loaderReadsTheGoldenBytes)
{
    upd_info_t info;
    FirmwareBlocks blocks;
    ASSERT_EQ (parsePackage (goldenPackage, info, blocks).fault, PackageFault::none);

    EXPECT_EQ (info.version, 105);
    EXPECT_EQ (info.blockCount, 3);
    EXPECT_EQ (info.totalSize, 12u);
    EXPECT_TRUE (isPackageValid (info.totalSize, info));

    const auto expected = goldenDescription().blocks;

    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        EXPECT_EQ (blocks[i].id, expected[i].id) << i;
        EXPECT_EQ (blocks[i].enabled, expected[i].enabled) << i;
        EXPECT_EQ (blocks[i].encrypted, expected[i].scramble) << i;
        EXPECT_EQ (blocks[i].keyIndex, expected[i].keyIndex) << i;
        EXPECT_EQ (blocks[i].size, expected[i].data.size()) << i;
        EXPECT_EQ (blocks[i].data, expected[i].data) << i;
    }

    EXPECT_EQ (blocks[1].crc16, 0xCBD6);
}

TEST (PackageFormat, everyPaddingSurvivesTheRoundTrip)
{
    PackageDescription package { .version = 999, .blocks = {} };

    for (std::size_t size = 0; size < maximumBlockCount; ++size)
    {
        Bytes data (size);
        std::iota (data.begin(), data.end(), std::uint8_t { 0xF8 });
        package.blocks.push_back ({ .id = 0xFFFF, .data = data, .enabled = true, .scramble = size % 8 < 5 });
    }

    upd_info_t info;
    FirmwareBlocks blocks;
    ASSERT_EQ (parsePackage (writePackage (package), info, blocks).fault, PackageFault::none);
    EXPECT_EQ (info.version, 999);
    EXPECT_EQ (info.totalSize, 120u);

    for (std::size_t i = 0; i < maximumBlockCount; ++i)
        EXPECT_EQ (blocks[i].data, package.blocks[i].data) << i;
}

TEST (PackageFormat, whatNobodyShouldWrite)
{
    struct Case
    {
        unsigned version;
        std::vector<std::size_t> sizes;
        std::string_view reason; ///< a part of it; empty: there is none
        PackageFault fault;      ///< what the loader says of it
        bool offered;
    };

    using Sizes = std::vector<std::size_t>;
    constexpr auto most = sizeLimit - 1;

    const Case cases[] { { 1, { 1 }, "", PackageFault::none, true },
                         { 999, { most - 5, 5 }, "", PackageFault::none, true },
                         { 100, Sizes (16, 1), "", PackageFault::none, true },
                         { 0, { 1 }, "0.00", PackageFault::none, false },
                         { 1000, { 1 }, "9.99", PackageFault::none, false },
                         { 100, {}, "at least one block", PackageFault::none, false },
                         { 100, Sizes (17, 1), "17 blocks", PackageFault::tooManyBlocks, false },
                         { 100, { 0, 0 }, "no data", PackageFault::none, false },
                         { 100, { 1, sizeLimit }, "block 2 is too large", PackageFault::none, true },
                         { 100, { most, 1 }, "too large together", PackageFault::none, true } };

    for (const auto& [version, sizes, reason, fault, offered] : cases)
    {
        PackageDescription package { .version = version, .blocks = {} };

        for (const auto size : sizes)
            package.blocks.push_back ({ .id = 1, .data = Bytes (size, 0xAA) });

        const auto said = reasonAgainst (package);
        EXPECT_NE (said.find (reason), std::string::npos) << said;
        EXPECT_EQ (said.empty(), reason.empty()) << said;

        upd_info_t info;
        FirmwareBlocks blocks;
        const auto verdict = parsePackage (writePackage (package), info, blocks);
        EXPECT_EQ (verdict.fault, fault) << reason;
        EXPECT_EQ (verdict.fault == PackageFault::none && isPackageValid (info.totalSize, info), offered) << reason;
    }
}

} // namespace
} // namespace wqv
