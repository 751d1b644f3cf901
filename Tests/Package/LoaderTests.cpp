// SPDX-License-Identifier: GPL-3.0-or-later
// The loader with damaged and hostile files: every result is foretold, and none is a crash.

#include "GoldenPackage.h"
#include "TemporaryFolder.h"
#include "UpdatePackage.h"

#include <gtest/gtest.h>

#include <tuple>

#include <sys/stat.h>

namespace wqv
{

static bool operator== (const fw_info_t& a, const fw_info_t& b)
{
    const auto fields = [] (const fw_info_t& x)
    { return std::tie (x.id, x.enabled, x.encrypted, x.keyIndex, x.size, x.data, x.crc16); };

    return fields (a) == fields (b);
}

namespace
{

struct Outcome
{
    PackageVerdict verdict;
    upd_info_t info;
    FirmwareBlocks blocks;
};

Outcome parse (const Bytes& file)
{
    Outcome outcome;
    outcome.verdict = parsePackage (file, outcome.info, outcome.blocks);
    return outcome;
}

/** The block that a byte of the golden package lies in. */
unsigned blockAt (std::size_t place)
{
    return place < goldenBlockOffsets[1] ? 1 : place < goldenBlockOffsets[2] ? 2 : 3;
}

Bytes goldenBody()
{
    return { goldenPackage.begin(), goldenPackage.end() - 4 };
}

void expectVerdict (const PackageVerdict& actual, const PackageVerdict& expected, const std::string& about)
{
    EXPECT_EQ (actual.fault, expected.fault) << about;
    EXPECT_EQ (actual.block, expected.block) << about;
    EXPECT_EQ (actual.offset, expected.offset) << about;
}

/** What each byte of the golden package is for. m, f, p: must be just so. v: enters the version and the key. c: count.
    K: enters the key. i, e, k: id, enable mark, key index of a plain block. x, X: encrypt mark of a plain and of a
    scrambled block. s: size. d: data or CRC-16. A point: free. */
constexpr std::string_view roles = "mmmmffff....ppppppppvvvvc..."
                                   "........iiiiexk.....ssssddd...dd"
                                   "KKKK....iiiieXK.....ssssddddd.....dd"
                                   "........iiiiexk.....ssssdddd..dd";

static_assert (roles.size() == goldenPackage.size() - 4);

PackageVerdict expectedVerdict (std::size_t place, std::uint8_t value)
{
    const auto scrambledBlock = 2u;
    const auto block = blockAt (place);
    const auto checksumOf = [] (unsigned number) {
        return PackageVerdict { PackageFault::blockChecksum, number, goldenBlockOffsets[number] - 2 };
    };

    switch (roles[place])
    {
        case 'm': return { PackageFault::magic, 0, 0 };
        case 'f': return { PackageFault::formatVersion, 0, 4 };
        case 'p': return { PackageFault::productCode, 0, 12 };
        case 'v': return checksumOf (scrambledBlock);
        case 'K':
        case 'x':
        case 'd': return checksumOf (block);
        case 'X': return value == 0 ? checksumOf (block) : PackageVerdict {};
        case 'c':
            if (value > 16)
                return { PackageFault::tooManyBlocks, 0, 24 };

            return value > 3 ? PackageVerdict { PackageFault::blockBeyondEnd, 4, 128 } : PackageVerdict {};
        default: return {};
    }
}

/** The golden records with the one field changed that @p place stands for. */
fw_info_t expectedRecord (fw_info_t record, std::size_t place, std::uint8_t value, std::size_t blockOffset)
{
    const auto nibble = 4 * (3 - (place - blockOffset - 8));

    switch (roles[place])
    {
        case 'i':
            record.id = (record.id & ~(0xFu << nibble)) | (std::uint32_t { ConvertAsciiToHex (value) } << nibble);
            break;
        case 'e': record.enabled = value == 'Y'; break;
        case 'k': record.keyIndex = value; break;
        default: break;
    }

    return record;
}

TEST (Loader, everyChangeOfOneByte)
{
    const auto golden = parse ({ goldenPackage.begin(), goldenPackage.end() });

    for (std::size_t place = 0; place < goldenPackage.size(); ++place)
    {
        for (unsigned change = 1; change < 256; ++change)
        {
            Bytes file (goldenPackage.begin(), goldenPackage.end());
            file[place] ^= static_cast<std::uint8_t> (change);
            const auto value = file[place];
            const auto about = "byte " + std::to_string (place) + " = " + std::to_string (value);
            expectVerdict (parse (file).verdict, { PackageFault::fileChecksum, 0, 128 }, about);

            if (place >= roles.size())
                continue;

            const auto outcome = parse (sealed (std::span (file).first (roles.size())));
            const auto& verdict = outcome.verdict;

            if (roles[place] == 's')
            {
                EXPECT_NE (verdict.fault, PackageFault::none) << about;
                EXPECT_EQ (verdict.block, blockAt (place)) << about;
            }
            else
            {
                expectVerdict (verdict, expectedVerdict (place, value), about);
            }

            const auto damaged = verdict.fault != PackageFault::none;
            const auto intact = ! damaged ? outcome.info.blockCount : verdict.block == 0 ? 0 : verdict.block - 1;
            std::uint32_t total = 0;

            for (std::size_t i = 0; i < intact; ++i)
            {
                total += outcome.blocks[i].size;
                const auto start = goldenBlockOffsets[i];
                const auto isHere = place >= start && place < goldenBlockOffsets[i + 1];
                const auto& record = golden.blocks[i];
                EXPECT_TRUE (outcome.blocks[i] == (isHere ? expectedRecord (record, place, value, start) : record))
                    << about;
            }

            EXPECT_TRUE (damaged || outcome.info.totalSize == total) << about;
        }
    }
}

TEST (Loader, everyTruncation)
{
    const auto body = goldenBody();

    for (std::size_t length = 0; length < goldenPackage.size(); ++length)
    {
        const auto about = std::to_string (length) + " bytes";
        const PackageVerdict tooShort { PackageFault::tooShort, 0, length };
        const PackageVerdict badChecksum { PackageFault::fileChecksum, 0, length - 4 };
        expectVerdict (
            parse ({ goldenPackage.begin(), goldenPackage.begin() + static_cast<std::ptrdiff_t> (length) }).verdict,
            length < 28 ? tooShort : badChecksum,
            about);

        if (length >= body.size())
            continue;

        const auto outcome = parse (sealed (std::span (body).first (length)));
        EXPECT_NE (outcome.verdict.fault, PackageFault::none) << about;

        if (length >= 28)
        {
            EXPECT_EQ (outcome.verdict.block, blockAt (length)) << about;
        }
    }
}

TEST (Loader, noSizeIsBelieved)
{
    for (unsigned block = 1; block <= 3; ++block)
    {
        const auto start = goldenBlockOffsets[block - 1];
        const auto largest = static_cast<std::uint32_t> (goldenPackage.size() - start - 28);

        for (const auto size :
             { largest + 1, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFF00u, 0xFFFFFFFBu, 0xFFFFFFFCu, 0xFFFFFFFDu, 0xFFFFFFFFu })
        {
            auto body = goldenBody();

            for (unsigned i = 0; i < 4; ++i)
                body[start + 20 + i] = static_cast<std::uint8_t> (size >> (8 * i));

            const auto outcome = parse (sealed (body));
            expectVerdict (outcome.verdict, { PackageFault::blockBeyondEnd, block, start }, std::to_string (size));
            EXPECT_EQ (outcome.info.totalSize, block == 1 ? 0u : block == 2 ? 3u : 8u);
            EXPECT_TRUE (outcome.blocks[block - 1].data.empty());
        }

        // One byte less, and the file's own last bytes are taken for the block's trailer.
        auto body = goldenBody();
        body[start + 20] = static_cast<std::uint8_t> (largest);
        expectVerdict (parse (sealed (body)).verdict, { PackageFault::blockChecksum, block, 130 }, "largest");
    }
}

TEST (Loader, versionsThatAreNoneAreNotOffered)
{
    for (const std::string_view digits : { "000", "/99", "0/9", "00/" })
    {
        // Without the scrambled block, whose key has the digits in it.
        auto description = goldenDescription();
        description.blocks.erase (description.blocks.begin() + 1);
        auto file = writePackage (description);
        std::copy (digits.begin(), digits.end(), file.begin() + 20);

        const auto outcome = parse (sealed (std::span (file).first (file.size() - 4)));
        EXPECT_EQ (outcome.verdict.fault, PackageFault::none) << digits;
        EXPECT_FALSE (isPackageValid (outcome.info.totalSize, outcome.info)) << digits;
    }
}

TEST (Loader, anyFileGivesAResultAtOnce)
{
    const TemporaryFolder folder;
    auto badThird = goldenBody();
    badThird[120] ^= 1;

    ASSERT_EQ (mkfifo (folder.path ("fifo").c_str(), 0600), 0);
    std::filesystem::create_directory (folder.path ("directory"));
    std::filesystem::create_symlink ("good", folder.path ("link"));
    std::filesystem::create_symlink ("nowhere", folder.path ("broken"));
    std::filesystem::resize_file (folder.write ("huge", {}), maximumPackageSize + 1);
    folder.write ("good", goldenPackage);
    folder.write ("empty", {});
    folder.write ("third", sealed (badThird));

    const std::tuple<const char*, PackageFault, std::uint32_t> cases[] {
        { "good", PackageFault::none, 12 },
        { "link", PackageFault::none, 12 },
        { "broken", PackageFault::cannotOpen, 0 },
        { "missing", PackageFault::cannotOpen, 0 },
        { "good/below", PackageFault::cannotOpen, 0 },
        { "directory", PackageFault::notARegularFile, 0 },
        { "fifo", PackageFault::notARegularFile, 0 },
        { "huge", PackageFault::tooLarge, 0 },
        { "empty", PackageFault::tooShort, 0 },
        { "third", PackageFault::blockChecksum, 0 },
    };

    for (const auto& [name, fault, total] : cases)
    {
        Outcome outcome;
        EXPECT_EQ (loadPackage (folder.path (name), outcome.info, outcome.blocks).fault, fault) << name;
        EXPECT_EQ (checkUPD (folder.path (name), outcome.info, outcome.blocks), total) << name;

        // What was read before the fault stays, and the block at fault too.
        if (fault == PackageFault::blockChecksum)
        {
            for (std::size_t i = 0; i < 3; ++i)
                EXPECT_EQ (outcome.blocks[i].data.size(), goldenDescription().blocks[i].data.size());
        }
    }
}

} // namespace
} // namespace wqv
