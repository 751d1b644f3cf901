// SPDX-License-Identifier: GPL-3.0-or-later
// The loader and the writer against bytes written out by hand, and the loader with damaged and hostile files.

#include "GoldenPackage.h"
#include "TemporaryFolder.h"
#include "UpdatePackage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <numeric>
#include <tuple>
#include <vector>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace wqv
{
namespace
{

struct LoadResult
{
    PackageVerdict verdict;
    upd_info_t info;
    FirmwareBlocks blocks;
};

LoadResult parse (std::span<const std::uint8_t> file)
{
    LoadResult result;
    result.verdict = parsePackage (file, result.info, result.blocks);
    return result;
}

auto fields (const PackageVerdict& verdict)
{
    return std::tuple (verdict.fault, verdict.block, verdict.offset);
}

const Bytes goldenBody { goldenPackage.begin(), goldenPackage.end() - 4 };

TEST (Loader, goldenBytes)
{
    EXPECT_EQ (writePackage (goldenDescription()), Bytes (goldenPackage.begin(), goldenPackage.end()));

    const auto [verdict, info, blocks] = parse (goldenPackage);
    EXPECT_EQ (verdict.fault, PackageFault::none);
    EXPECT_EQ (info.version, 105);
    EXPECT_EQ (info.blockCount, 3);
    EXPECT_EQ (info.totalSize, 12u);
    EXPECT_EQ (blocks[1].crc16, 0xCBD6);

    const auto expected = goldenDescription().blocks;

    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        const auto& [id, data, enabled, scramble, seed, keyIndex] = expected[i];
        EXPECT_EQ (std::tuple (blocks[i].id, blocks[i].enabled, blocks[i].encrypted, blocks[i].keyIndex),
                   std::tuple (id, enabled, scramble, keyIndex));
        EXPECT_EQ (blocks[i].size, data.size());
        EXPECT_EQ (blocks[i].data, data);
    }
}

TEST (Loader, asManyBlocksAsThereMayBeWithEveryPadding)
{
    PackageDescription package { .version = 999, .blocks = {} };

    for (std::size_t size = 0; size < maximumBlockCount; ++size)
    {
        Bytes data (size);
        std::iota (data.begin(), data.end(), std::uint8_t { 0xF8 });
        package.blocks.push_back ({ .id = 0xFFFF, .data = data, .enabled = size % 2 > 0, .scramble = size % 8 < 5 });
    }

    EXPECT_EQ (reasonAgainst (package), "");
    EXPECT_EQ (reasonAgainst ({ .version = 1, .blocks = { { .data = Bytes (sizeLimit - 1) } } }), "");

    const auto [verdict, info, blocks] = parse (writePackage (package));
    EXPECT_EQ (verdict.fault, PackageFault::none);
    EXPECT_EQ (info.version, 999);
    EXPECT_EQ (info.totalSize, 120u);

    for (std::size_t i = 0; i < maximumBlockCount; ++i)
        EXPECT_EQ (blocks[i].data, package.blocks[i].data) << i;
}

/** What each byte of the golden package is for. m, f, p: must be just so. d: enters a block's data, its key or its
    CRC-16. X: encrypt mark of a scrambled block. e: enable mark. i: digit of the id 1A2F. c: count. s: size. A point:
    free, or the block's own affair. */
constexpr std::string_view roles = "mmmmffff....ppppppppddddc..."
                                   "............ed......ssssddd...dd"
                                   "dddd....iiiieXd.....ssssddddd.....dd"
                                   "............ed......ssssdddd..dd";

static_assert (roles.size() == goldenPackage.size() - 4);

/** The block that a byte belongs to, from 0; for the header the scrambled one, whose key it may enter. */
std::size_t blockAt (std::size_t place)
{
    return place < 28 || (place >= 60 && place < 96) ? 1 : place < 60 ? 0 : 2;
}

PackageVerdict expectedVerdict (std::size_t place, std::uint8_t value)
{
    const auto block = blockAt (place);
    const PackageVerdict wrongData { PackageFault::blockChecksum,
                                     static_cast<unsigned> (block + 1),
                                     goldenBlockOffsets[block + 1] - 2 };

    switch (roles[place])
    {
        case 'm': return { PackageFault::magic, 0, 0 };
        case 'f': return { PackageFault::formatVersion, 0, 4 };
        case 'p': return { PackageFault::productCode, 0, 12 };
        case 'd': return wrongData;
        case 'X': return value == 0 ? wrongData : PackageVerdict {};
        case 'c':
            return value > 16  ? PackageVerdict { PackageFault::tooManyBlocks, 0, 24 }
                   : value > 3 ? PackageVerdict { PackageFault::blockBeyondEnd, 4, 128 }
                               : PackageVerdict {};
        default: return {};
    }
}

TEST (Loader, everyChangeOfOneByte)
{
    for (std::size_t place = 0; place < roles.size(); ++place)
        for (unsigned change = 1; change < 256; ++change)
        {
            SCOPED_TRACE (testing::Message() << "byte " << place << " changed by " << change);
            auto file = goldenPackage;
            const auto value = file[place] ^= static_cast<std::uint8_t> (change);
            EXPECT_EQ (fields (parse (file).verdict), std::tuple (PackageFault::fileChecksum, 0u, 128u));

            const auto [verdict, info, blocks] = parse (sealed (std::span (file).first (roles.size())));

            if (roles[place] == 's')
                EXPECT_NE (verdict.fault, PackageFault::none);
            else
                EXPECT_EQ (fields (verdict), fields (expectedVerdict (place, value)));

            EXPECT_TRUE (roles[place] != 'e' || blocks[blockAt (place)].enabled == (value == 'Y'));

            if (roles[place] == 'i')
            {
                const auto digit = std::isxdigit (value) != 0
                                       ? std::stoul (std::string { static_cast<char> (value) }, nullptr, 16)
                                       : 0;
                const auto shift = 4 * (71 - place);
                EXPECT_EQ (blocks[1].id, (0x1A2Fu & ~(0xFu << shift)) | (digit << shift));
            }
        }
}

TEST (Loader, everyTruncation)
{
    for (std::size_t length = 0; length < goldenBody.size(); ++length)
    {
        const auto expected = length < 28 ? std::tuple (PackageFault::tooShort, 0u, length)
                                          : std::tuple (PackageFault::fileChecksum, 0u, length - 4);
        EXPECT_EQ (fields (parse (std::span (goldenBody).first (length)).verdict), expected) << length;

        // The checksum that is put behind it is taken for what is missing, if that is no more.
        const auto end = *std::ranges::upper_bound (goldenBlockOffsets, length);
        const auto fault = parse (sealed (std::span (goldenBody).first (length))).verdict.fault;
        EXPECT_NE (fault, PackageFault::none) << length;
        EXPECT_EQ (fault == PackageFault::tooShort, length + 4 < 28) << length;
        EXPECT_EQ (fault == PackageFault::blockChecksum, length >= 28 && length + 4 >= end) << length;
    }
}

TEST (Loader, noSizeIsBelieved)
{
    for (std::size_t block = 0; block < 3; ++block)
    {
        const auto start = goldenBlockOffsets[block];
        const auto largest = static_cast<std::uint32_t> (goldenPackage.size() - start - 28);

        // With the largest one the file's own last bytes are taken for the block's trailer.
        for (const auto size :
             { largest, largest + 1, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFBu, 0xFFFFFFFCu, 0xFFFFFFFFu })
        {
            auto body = goldenBody;

            for (unsigned i = 0; i < 4; ++i)
                body[start + 20 + i] = static_cast<std::uint8_t> (size >> (8 * i));

            const auto outcome = parse (sealed (body));
            EXPECT_EQ (outcome.verdict.fault,
                       size == largest ? PackageFault::blockChecksum : PackageFault::blockBeyondEnd)
                << size;
            EXPECT_EQ (outcome.verdict.block, block + 1);
            EXPECT_EQ (outcome.verdict.offset, size == largest ? 130 : start);
        }
    }
}

TEST (Loader, anyFileGivesAResultAtOnce)
{
    const TemporaryFolder folder;
    auto badThird = goldenBody;
    badThird[120] ^= 1;

    std::filesystem::create_directory (folder.path ("directory"));
    std::filesystem::resize_file (folder.write ("huge", {}), (std::uintmax_t { 1 } << 31) + 1);
    folder.write ("good", goldenPackage);
    folder.write ("empty", {});
    folder.write ("third", sealed (badThird));

    std::vector<std::tuple<const char*, PackageFault, std::uint32_t>> cases {
        { "good", PackageFault::none, 12 },         { "directory", PackageFault::notARegularFile, 0 },
        { "missing", PackageFault::cannotOpen, 0 }, { "huge", PackageFault::tooLarge, 0 },
        { "empty", PackageFault::tooShort, 0 },     { "third", PackageFault::blockChecksum, 0 },
    };

#ifndef _WIN32
    ASSERT_EQ (mkfifo (folder.path ("fifo").c_str(), 0600), 0);
    std::filesystem::create_symlink ("good", folder.path ("link"));
    cases.emplace_back ("fifo", PackageFault::notARegularFile, 0);
    cases.emplace_back ("link", PackageFault::none, 12);

    // One line of text in a file of a whole page, says the system; a bare root may do without.
    const auto* shorterThanItSays = "/sys/devices/system/cpu/online";
    cases.emplace_back (shorterThanItSays,
                        std::filesystem::exists (shorterThanItSays) ? PackageFault::cannotReadWhole
                                                                    : PackageFault::cannotOpen,
                        0);
#endif

    for (const auto& [name, fault, total] : cases)
    {
        LoadResult result;
        EXPECT_EQ (loadPackage (folder.path (name), result.info, result.blocks).fault, fault) << name;
        EXPECT_EQ (checkUPD (folder.path (name), result.info, result.blocks), total) << name;

        // What was read before the fault stays.
        EXPECT_EQ (result.blocks[1].data.size(), name == std::string_view ("third") || total > 0 ? 5u : 0u) << name;
    }
}

} // namespace
} // namespace wqv
