// SPDX-License-Identifier: GPL-3.0-or-later
// The reader of the package format, from bytes in memory, and all that can be wrong with them; docs/package-format.md
// has the tables of the format.

#pragma once

#include "Checksums.h"
#include "PackageRecords.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace wqv
{

/** What can be wrong with an update package. */
enum class PackageFault
{
    none,
    cannotOpen,
    notARegularFile,
    tooLarge,
    cannotReadWhole,
    outOfMemory,
    tooShort,
    fileChecksum,
    magic,
    formatVersion,
    productCode,
    tooManyBlocks,
    blockBeyondEnd,
    blockChecksum
};

/** The header of a package, its texts as they stand in the file. */
struct upd_header_t
{
    static constexpr std::size_t fileSize = 28;

    static constexpr std::array<std::uint8_t, 4> rightMagic { 'U', 'P', 'D', ' ' };
    static constexpr std::array<std::uint8_t, 4> rightFormatVersion { '0', '1', '0', '0' };
    static constexpr std::array<std::uint8_t, 8> rightProductCode { 'W', 'Q', 'V', 'K', 'R', 'V', '2', '0' };

    std::array<std::uint8_t, 4> magic {};
    std::array<std::uint8_t, 4> formatVersion {};
    std::array<std::uint8_t, 8> productCode {};
    std::array<std::uint8_t, 4> versionDigits {}; ///< three decimal digits and one byte that only the key uses
    std::uint8_t blockCount = 0;
};

/** The header of one block. */
struct firmware_header_t
{
    static constexpr std::size_t fileSize = 24;

    std::uint32_t keySeed = 0;
    std::array<std::uint8_t, 4> idDigits {}; ///< hexadecimal, most significant digit first
    std::uint8_t enableMark = 0;             ///< 'Y' marks the block for writing
    std::uint8_t encryptMark = 0;            ///< not 0: the data is scrambled
    std::uint8_t keyIndex = 0;
    std::uint32_t size = 0; ///< bytes of data, without padding
};

/** The CRC-32 at the end of the file takes this many bytes. */
inline constexpr std::size_t checksumSize = 4;

/** How many bytes of padding follow a block's data: 0 to 3, up to a multiple of 4. */
[[nodiscard]] constexpr std::uint64_t paddingOf (std::uint32_t size)
{
    return (4 - size % 4) % 4;
}

/** The descrambling key of one block: (keySeed XOR the first word of the product code) + the word of the version
    digits, XOR the table's entry; words little-endian, arithmetic modulo 2^32. Scrambling uses the same key. */
[[nodiscard]] std::uint32_t createEncryptionKey (const CrcTable& table,
                                                 const upd_header_t& header,
                                                 const firmware_header_t& block);

/** XORs every little-endian word with @p key; the length need not be a multiple of 4. Its own inverse. */
void descramble (std::span<std::uint8_t> data, std::uint32_t key);

/** Reads a package from bytes that stay where they are while the reader lives.

    Any bytes whatsoever give records or a fault, and no size field is believed before it is checked. The header is to
    be read first, then the blocks in order; a caller may go on after a fault as long as canGoOn() says so.
*/
class PackageReader
{
public:
    explicit PackageReader (std::span<const std::uint8_t> file);

    /** Checks that the file is long enough for a header, and the CRC-32 in its last four bytes: with these included,
        the CRC-32 of the whole file is 0. */
    [[nodiscard]] PackageFault checkFile();

    /** Reads the header: version, block count, a total size of 0. After tooShort @p info is as it was. */
    [[nodiscard]] PackageFault readHeader (upd_info_t& info);

    /** Reads the next block into @p block and adds its size to the total of @p info. On blockChecksum the record is
        filled and the next block can be read; on blockBeyondEnd it holds what the block's header says, without data. */
    [[nodiscard]] PackageFault readBlock (upd_info_t& info, fw_info_t& block);

    /** Whether the next block can be read: all before it lay inside the file. */
    [[nodiscard]] bool canGoOn() const { return ! lost; }

    /** The byte offset in the file of what was found wrong last. */
    [[nodiscard]] std::uint64_t offset() const { return faultOffset; }

    /** The header as it stands in the file, once it was read. */
    [[nodiscard]] const upd_header_t& fileHeader() const { return header; }

    /** The header of the last block that readBlock() was called for; none if the file ends before that header does. */
    [[nodiscard]] const std::optional<firmware_header_t>& lastBlockHeader() const { return blockHeader; }

    /** The byte offset in the file of the next block, or of what follows the last one. */
    [[nodiscard]] std::size_t nextBlock() const { return position; }

private:
    PackageFault fault (PackageFault what, std::uint64_t where);

    std::span<const std::uint8_t> file;
    upd_header_t header;
    std::optional<firmware_header_t> blockHeader;
    std::size_t position = 0;
    std::uint64_t faultOffset = 0;
    bool lost = false;
};

} // namespace wqv
