// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzzes the package loader, which must find in any bytes what wqv-package inspect finds. Checksums are made right, so that
// what lies behind them is reached.

#include "Fuzz.h"
#include "Inspection.h"

#include <vector>

namespace wqv
{
namespace
{

using Bytes = std::vector<std::uint8_t>;

void putFileChecksum (Bytes& file)
{
    const auto end = file.size() - checksumSize;
    const auto crc = calcCRC32 (std::span (file).first (end));

    for (std::size_t i = 0; i < checksumSize; ++i)
        file[end + i] = static_cast<std::uint8_t> (crc >> (24 - 8 * i));
}

void expectSameBlocks (const Inspection& inspected, const upd_info_t& info, const FirmwareBlocks& blocks)
{
    expect (inspected.blocks.size() == info.blockCount, "a sound package is inspected to its last block");
    std::uint64_t total = 0;

    for (std::size_t i = 0; i < info.blockCount; ++i)
    {
        const auto& [offset, seed, seen, crc16] = inspected.blocks[i];
        const auto& block = blocks[i];
        total += block.data.size();
        expect (block.data.size() == block.size, "a block has as much data as it says");
        expect (block.crc16 == calcCRC16 (block.data), "the data of a sound block fits its CRC-16");
        expect (seen.id == block.id && seen.enabled == block.enabled && seen.encrypted == block.encrypted
                    && seen.keyIndex == block.keyIndex && seen.size == block.size && seen.crc16 == block.crc16,
                "loader and inspection read the same block");
    }

    expect (info.totalSize == total && inspected.info.totalSize == total, "the total size is that of all blocks");
}

PackageVerdict load (const Bytes& file, FirmwareBlocks& blocks)
{
    upd_info_t info;
    const auto verdict = parsePackage (file, info, blocks);
    const auto inspected = inspect (file);
    const auto first = inspected.faults.empty() ? PackageVerdict {} : inspected.faults.front();

    expect (verdict.fault == first.fault && verdict.block == first.block && verdict.offset == first.offset,
            "loader and inspection find the same first fault");

    if (verdict.fault == PackageFault::none)
        expectSameBlocks (inspected, info, blocks);

    return verdict;
}

void fuzz (Bytes file)
{
    FirmwareBlocks blocks;
    auto verdict = load (file, blocks);

    if (file.size() < checksumSize)
        return;

    // Each block in turn gets the CRC-16 of its data, unless one of the header's free bytes is odd.
    for (unsigned repairs = 0; repairs <= maximumBlockCount; ++repairs)
    {
        putFileChecksum (file);
        verdict = load (file, blocks);
        expect (verdict.fault != PackageFault::fileChecksum, "the loader agrees with the CRC-32");

        if (verdict.fault != PackageFault::blockChecksum || file[25] % 2 == 1)
            return;

        const auto crc16 = calcCRC16 (blocks[verdict.block - 1].data);
        const auto place = static_cast<std::size_t> (verdict.offset);
        file.at (place) = static_cast<std::uint8_t> (crc16);
        file.at (place + 1) = static_cast<std::uint8_t> (crc16 >> 8);
    }
}

} // namespace
} // namespace wqv

int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    wqv::fuzz ({ data, data + size });
    return 0;
}
