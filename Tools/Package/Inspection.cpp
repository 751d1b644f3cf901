// SPDX-License-Identifier: GPL-3.0-or-later
// The loader's own reader does the reading; this collects what the records leave out.

#include "Inspection.h"

#include "EscapedText.h"

namespace wqv
{
namespace
{

constexpr std::size_t checksumSize = 4;
constexpr std::size_t trailerSize = 4;

ChecksumPair fileChecksum (std::span<const std::uint8_t> file)
{
    const auto body = file.first (file.size() - checksumSize);
    ChecksumPair crc { .stored = 0, .calculated = updateCRC32 (0xFFFFFFFF, body) };

    for (const auto byte : file.last (checksumSize))
        crc.stored = (crc.stored << 8) | byte;

    return crc;
}

std::uint32_t seedAt (std::span<const std::uint8_t> file, std::size_t offset)
{
    std::uint32_t seed = 0;

    for (std::size_t i = 4; i-- > 0;)
        seed = (seed << 8) | file[offset + i];

    return seed;
}

void readBlocks (PackageReader& reader, std::span<const std::uint8_t> file, Inspection& result)
{
    std::uint64_t position = upd_header_t::fileSize;

    for (unsigned number = 1; number <= result.info.blockCount && reader.canGoOn(); ++number)
    {
        InspectedBlock block { .offset = position, .seed = 0, .record = {}, .crc16 = {} };

        if (const auto fault = reader.readBlock (result.info, block.record); fault != PackageFault::none)
            result.faults.push_back ({ fault, number, reader.offset() });

        if (file.size() - position < firmware_header_t::fileSize)
            return;

        block.seed = seedAt (file, static_cast<std::size_t> (position));

        if (reader.canGoOn())
        {
            const auto size = block.record.size;
            block.crc16 = { .stored = block.record.crc16, .calculated = calcCRC16 (block.record.data) };
            result.enabledSize += block.record.enabled ? size : 0;
            position += firmware_header_t::fileSize + size + paddingOf (size) + trailerSize;
        }

        block.record.data = {};
        result.blocks.push_back (std::move (block));
    }

    if (reader.canGoOn() && file.size() - position > checksumSize)
        result.surplus = file.size() - position - checksumSize;
}

} // namespace

Inspection inspect (std::span<const std::uint8_t> file)
{
    Inspection result;
    result.fileSize = file.size();

    if (file.size() >= checksumSize)
        result.crc32 = fileChecksum (file);

    PackageReader reader (file);

    // A file without a whole header is too short, which readHeader says as well.
    if (reader.checkFile() == PackageFault::fileChecksum)
        result.faults.push_back ({ PackageFault::fileChecksum, 0, file.size() - checksumSize });

    if (const auto fault = reader.readHeader (result.info); fault != PackageFault::none)
        result.faults.push_back ({ fault, 0, reader.offset() });

    if (! reader.canGoOn())
        return result;

    result.hasHeader = true;
    result.magic = escapedBytes (file.subspan (0, 4));
    result.formatVersion = escapedBytes (file.subspan (4, 4));
    result.productCode = escapedBytes (file.subspan (12, 8));
    result.versionDigits = escapedBytes (file.subspan (20, 4));
    readBlocks (reader, file, result);
    return result;
}

} // namespace wqv
