// SPDX-License-Identifier: GPL-3.0-or-later
// Collects everything that a package says, by the reader that the loader uses too.

#include "Inspection.h"

#include "EscapedText.h"

namespace wqv
{
namespace
{

ChecksumPair fileChecksum (std::span<const std::uint8_t> file)
{
    const auto body = file.first (file.size() - checksumSize);
    ChecksumPair crc { .stored = 0, .calculated = calcCRC32 (body) };

    for (const auto byte : file.last (checksumSize))
        crc.stored = (crc.stored << 8) | byte;

    return crc;
}

void readBlocks (PackageReader& reader, Inspection& result)
{
    for (unsigned number = 1; number <= result.info.blockCount && reader.canGoOn(); ++number)
    {
        InspectedBlock block { .offset = reader.nextBlock(), .seed = 0, .record = {}, .crc16 = {} };

        if (const auto fault = reader.readBlock (result.info, block.record); fault != PackageFault::none)
            result.faults.push_back ({ fault, number, reader.offset() });

        if (! reader.lastBlockHeader())
            return;

        block.seed = reader.lastBlockHeader()->keySeed;

        if (reader.canGoOn())
        {
            block.crc16 = { .stored = block.record.crc16, .calculated = calcCRC16 (block.record.data) };
            result.enabledSize += block.record.enabled ? block.record.size : 0;
        }

        block.record.data = {};
        result.blocks.push_back (std::move (block));
    }

    if (const auto rest = result.fileSize - reader.nextBlock(); reader.canGoOn() && rest > checksumSize)
        result.surplus = rest - checksumSize;
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
        result.faults.push_back ({ PackageFault::fileChecksum, 0, reader.offset() });

    if (const auto fault = reader.readHeader (result.info); fault != PackageFault::none)
        result.faults.push_back ({ fault, 0, reader.offset() });

    if (! reader.canGoOn())
        return result;

    const auto& header = reader.fileHeader();
    result.hasHeader = true;
    result.magic = escapedBytes (header.magic);
    result.formatVersion = escapedBytes (header.formatVersion);
    result.productCode = escapedBytes (header.productCode);
    result.versionDigits = escapedBytes (header.versionDigits);
    readBlocks (reader, result);
    return result;
}

} // namespace wqv
