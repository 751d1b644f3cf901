// SPDX-License-Identifier: GPL-3.0-or-later
// The loader of the update package: one file in, a summary and block records out.

#pragma once

#include "PackageReader.h"
#include "PackageRecords.h"

#include <cstdint>
#include <filesystem>
#include <span>

namespace wqv
{

/** The package that the program offers; it lies in the directory of the program's executable. */
inline constexpr auto packageFileName = "WQV-KRV20_UP.upd";

/** What a package was found to be. */
struct PackageVerdict
{
    PackageFault fault = PackageFault::none;
    unsigned block = 0;       ///< 1-based number of the block at fault; 0 when it is not a block's fault
    std::uint64_t offset = 0; ///< byte offset in the file of what is wrong; 0 when there is no such place
};

/** Larger files are refused unread: 2 GiB. */
inline constexpr std::uint64_t maximumPackageSize = std::uint64_t { 1 } << 31;

/** Loads a package and validates it: whole-file CRC-32, header, every block with its CRC-16.

    Whatever lies at @p file (nothing, a directory, a FIFO, any bytes of any length) gives a result without waiting, and
    no memory is taken for a size that was not checked. The file is read once. After a fault in a block its own record,
    and those before it, stay filled.

    @returns info.totalSize, 0 on any failure
*/
[[nodiscard]] std::uint32_t checkUPD (const std::filesystem::path& file, upd_info_t& info, FirmwareBlocks& blocks);

/** Does what checkUPD does, and tells what is wrong and where. */
[[nodiscard]] PackageVerdict loadPackage (const std::filesystem::path& file, upd_info_t& info, FirmwareBlocks& blocks);

/** Does what loadPackage does, with bytes that are in memory already. */
[[nodiscard]] PackageVerdict parsePackage (std::span<const std::uint8_t> bytes,
                                           upd_info_t& info,
                                           FirmwareBlocks& blocks);

/** Whether the program offers a package: @p checkResult, the result of checkUPD, is not 0, and the version is above
    0. */
[[nodiscard]] constexpr bool isPackageValid (std::uint32_t checkResult, const upd_info_t& info)
{
    return checkResult != 0 && info.version > 0;
}

/** The bytes of a regular file of at most maximumPackageSize bytes. */
struct FileBytes
{
    PackageFault fault = PackageFault::none;
    std::vector<std::uint8_t> bytes; ///< empty after a fault
};

/** Reads a whole file, as loadPackage does: never waits for a FIFO, never returns a part. */
[[nodiscard]] FileBytes readPackageFile (const std::filesystem::path& file);

} // namespace wqv
