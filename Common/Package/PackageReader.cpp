// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the headers and blocks of a package. The compiler checks the offsets in a header, as its length is fixed; all
// others are checked here.

#include "PackageReader.h"

#include "HexDigit.h"
#include "LittleEndian.h"

#include <algorithm>

namespace wqv
{
namespace
{

/** Two unused bytes, then the CRC-16. */
constexpr std::size_t blockTrailerSize = 4;

template <std::size_t offset, std::size_t count, std::size_t extent>
std::array<std::uint8_t, count> field (std::span<const std::uint8_t, extent> bytes)
{
    std::array<std::uint8_t, count> copy {};
    std::ranges::copy (bytes.template subspan<offset, count>(), copy.begin());
    return copy;
}

upd_header_t parseHeader (std::span<const std::uint8_t, upd_header_t::fileSize> bytes)
{
    return { .magic = field<0, 4> (bytes),
             .formatVersion = field<4, 4> (bytes),
             .productCode = field<12, 8> (bytes),
             .versionDigits = field<20, 4> (bytes),
             .blockCount = bytes[24] };
}

firmware_header_t parseBlockHeader (std::span<const std::uint8_t, firmware_header_t::fileSize> bytes)
{
    return { .keySeed = littleEndian (bytes.subspan<0, 4>()),
             .idDigits = field<8, 4> (bytes),
             .enableMark = bytes[12],
             .encryptMark = bytes[13],
             .keyIndex = bytes[14],
             .size = littleEndian (bytes.subspan<20, 4>()) };
}

/** Bytes that are not digits just give another number: the version is judged as a whole, not digit by digit. */
std::int32_t versionFrom (std::span<const std::uint8_t, 4> digits)
{
    return 100 * (digits[0] - '0') + 10 * (digits[1] - '0') + (digits[2] - '0');
}

std::uint32_t idFrom (std::span<const std::uint8_t, 4> digits)
{
    std::uint32_t id = 0;

    for (const auto digit : digits)
        id = (id << 4) | ConvertAsciiToHex (digit);

    return id;
}

} // namespace

std::uint32_t createEncryptionKey (const CrcTable& table, const upd_header_t& header, const firmware_header_t& block)
{
    const auto seed = block.keySeed ^ littleEndian (std::span (header.productCode).first<4>());
    return (seed + littleEndian (header.versionDigits)) ^ table[block.keyIndex];
}

void descramble (std::span<std::uint8_t> data, std::uint32_t key)
{
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] ^= static_cast<std::uint8_t> (key >> (8 * (i % 4)));
}

PackageReader::PackageReader (std::span<const std::uint8_t> fileBytes) : file (fileBytes) {}

PackageFault PackageReader::fault (PackageFault what, std::uint64_t where)
{
    faultOffset = where;
    return what;
}

PackageFault PackageReader::checkFile()
{
    if (file.size() < upd_header_t::fileSize)
        return fault (PackageFault::tooShort, file.size());

    return calcCRC32 (file) == 0 ? PackageFault::none : fault (PackageFault::fileChecksum, file.size() - checksumSize);
}

PackageFault PackageReader::readHeader (upd_info_t& info)
{
    lost = true;

    if (file.size() < upd_header_t::fileSize)
        return fault (PackageFault::tooShort, file.size());

    header = parseHeader (file.first<upd_header_t::fileSize>());
    position = upd_header_t::fileSize;
    info = { .totalSize = 0, .version = versionFrom (header.versionDigits), .blockCount = header.blockCount };
    lost = false;

    if (header.magic != upd_header_t::rightMagic)
        return fault (PackageFault::magic, 0);

    if (header.formatVersion != upd_header_t::rightFormatVersion)
        return fault (PackageFault::formatVersion, 4);

    if (header.productCode != upd_header_t::rightProductCode)
        return fault (PackageFault::productCode, 12);

    if (header.blockCount > maximumBlockCount)
        return fault (PackageFault::tooManyBlocks, 24);

    return PackageFault::none;
}

PackageFault PackageReader::readBlock (upd_info_t& info, fw_info_t& block)
{
    const auto rest = file.subspan (position);
    blockHeader.reset();

    if (rest.size() < firmware_header_t::fileSize)
    {
        lost = true;
        return fault (PackageFault::blockBeyondEnd, position);
    }

    blockHeader = parseBlockHeader (rest.first<firmware_header_t::fileSize>());
    const auto body = rest.subspan (firmware_header_t::fileSize);

    block = { .id = idFrom (blockHeader->idDigits),
              .enabled = blockHeader->enableMark == 'Y',
              .encrypted = blockHeader->encryptMark != 0,
              .keyIndex = blockHeader->keyIndex,
              .size = blockHeader->size,
              .data = {},
              .crc16 = 0 };

    // 64 bits hold the sum of a 32-bit size and its padding.
    const auto paddedSize = blockHeader->size + paddingOf (blockHeader->size);

    if (body.size() < blockTrailerSize || body.size() - blockTrailerSize < paddedSize)
    {
        lost = true;
        return fault (PackageFault::blockBeyondEnd, position);
    }

    const auto data = body.first (blockHeader->size);
    const auto trailer = body.subspan (static_cast<std::size_t> (paddedSize)).first<blockTrailerSize>();

    block.data.assign (data.begin(), data.end());
    block.crc16 = static_cast<std::uint16_t> (littleEndian (trailer.subspan<2, 2>()));
    info.totalSize += blockHeader->size;

    if (block.encrypted)
        descramble (block.data, createEncryptionKey (crcTable, header, *blockHeader));

    const auto trailerPosition = position + firmware_header_t::fileSize + static_cast<std::size_t> (paddedSize);
    position = trailerPosition + blockTrailerSize;

    if (calcCRC16 (block.data) != block.crc16)
        return fault (PackageFault::blockChecksum, trailerPosition + 2);

    return PackageFault::none;
}

} // namespace wqv
