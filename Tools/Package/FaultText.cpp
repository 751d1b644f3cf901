// SPDX-License-Identifier: GPL-3.0-or-later
// The words for each fault of a package, and for versions.

#include "FaultText.h"

namespace wqv
{

std::string_view describe (PackageFault fault)
{
    switch (fault)
    {
        case PackageFault::none: return "nothing is wrong";
        case PackageFault::cannotOpen: return "the file cannot be opened";
        case PackageFault::notARegularFile: return "it is not a regular file";
        case PackageFault::tooLarge: return "the file is larger than 2 GiB";
        case PackageFault::cannotReadWhole: return "the file cannot be read to its end";
        case PackageFault::outOfMemory: return "there is not enough memory for it";
        case PackageFault::tooShort: return "the file ends before its 28-byte header does";
        case PackageFault::fileChecksum: return "the CRC-32 at the end does not match the file";
        case PackageFault::magic: return "the file does not begin with \"UPD \"";
        case PackageFault::formatVersion: return "the format version is not 0100";
        case PackageFault::productCode: return "the product code is not WQVKRV20";
        case PackageFault::tooManyBlocks: return "the header counts more than 16 blocks";
        case PackageFault::blockBeyondEnd: return "the block reaches beyond the end of the file";
        case PackageFault::blockChecksum: return "the block's CRC-16 does not match its data";
    }

    return "unknown fault";
}

std::string describe (const PackageVerdict& verdict)
{
    std::string text;

    if (verdict.block != 0)
        text = "block " + std::to_string (verdict.block) + ": ";

    text += describe (verdict.fault);

    // The faults before this one are not at any place in the file.
    if (verdict.fault >= PackageFault::tooShort)
        text += " (at byte " + std::to_string (verdict.offset) + ")";

    return text;
}

std::string reasonNotOffered (const PackageVerdict& verdict, const upd_info_t& info)
{
    if (verdict.fault != PackageFault::none)
        return describe (verdict);

    if (isPackageValid (info.totalSize, info))
        return {};

    return info.totalSize == 0 ? "the blocks hold no data: their total size must be above 0"
                               : "the version is " + versionText (info.version) + ": it must be above 0";
}

std::string versionText (std::int32_t version)
{
    // Bytes that are not digits give numbers that have no such form.
    if (version < 0)
        return std::to_string (version) + "/100";

    const auto hundredths = std::to_string (100 + version % 100);
    return std::to_string (version / 100) + "." + hundredths.substr (1);
}

} // namespace wqv
