// SPDX-License-Identifier: GPL-3.0-or-later
// Everything that a package file says, as far as it can be read.

#pragma once

#include "UpdatePackage.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace wqv
{

/** A checksum as the file states it and as its bytes give it. */
struct ChecksumPair
{
    std::uint32_t stored = 0;
    std::uint32_t calculated = 0;
};

/** One block whose header lies in the file. */
struct InspectedBlock
{
    std::uint64_t offset = 0;
    std::uint32_t seed = 0;
    fw_info_t record;                  ///< without data
    std::optional<ChecksumPair> crc16; ///< none when the block reaches beyond the end
};

/** What there is to see in a package, damaged or not. */
struct Inspection
{
    std::uint64_t fileSize = 0;
    std::optional<ChecksumPair> crc32; ///< none in a file of fewer than four bytes

    bool hasHeader = false;
    std::string magic, formatVersion, productCode, versionDigits; ///< bytes that are not printable as \xNN
    upd_info_t info;                                              ///< the total is that of the blocks that lie inside

    std::vector<InspectedBlock> blocks;
    std::uint64_t enabledSize = 0;
    std::uint64_t surplus = 0; ///< bytes between the last block and the CRC-32: the loader does not mind them

    std::vector<PackageVerdict> faults; ///< in the order of their discovery
};

/** Reads on after a fault as long as it is clear where to. */
[[nodiscard]] Inspection inspect (std::span<const std::uint8_t> file);

} // namespace wqv
