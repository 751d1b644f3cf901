// SPDX-License-Identifier: GPL-3.0-or-later
// Loads a package file: reads it whole and checks it, up to the first fault.

#include "UpdatePackage.h"

#include <fstream>
#include <new>
#include <system_error>

namespace wqv
{
namespace
{

FileBytes readRegularFile (const std::filesystem::path& path)
{
    std::error_code error;
    const auto status = std::filesystem::status (path, error);

    if (! std::filesystem::exists (status))
        return { PackageFault::cannotOpen, {} };

    // Opening a FIFO would wait for its writer.
    if (! std::filesystem::is_regular_file (status))
        return { PackageFault::notARegularFile, {} };

    std::ifstream stream (path, std::ios::binary);
    const auto size = std::filesystem::file_size (path, error);

    if (! stream || error)
        return { PackageFault::cannotOpen, {} };

    if (size > maximumPackageSize)
        return { PackageFault::tooLarge, {} };

    std::vector<std::uint8_t> bytes (static_cast<std::size_t> (size));
    stream.read (reinterpret_cast<char*> (bytes.data()), static_cast<std::streamsize> (size));

    if (static_cast<std::uintmax_t> (stream.gcount()) != size)
        return { PackageFault::cannotReadWhole, {} };

    return { PackageFault::none, std::move (bytes) };
}

} // namespace

FileBytes readPackageFile (const std::filesystem::path& file)
{
    try
    {
        return readRegularFile (file);
    }
    catch (const std::bad_alloc&)
    {
        return { PackageFault::outOfMemory, {} };
    }
}

PackageVerdict parsePackage (std::span<const std::uint8_t> bytes, upd_info_t& info, FirmwareBlocks& blocks)
{
    PackageReader reader (bytes);

    if (const auto fault = reader.checkFile(); fault != PackageFault::none)
        return { fault, 0, reader.offset() };

    if (const auto fault = reader.readHeader (info); fault != PackageFault::none)
        return { fault, 0, reader.offset() };

    for (unsigned i = 0; i < info.blockCount; ++i)
        if (const auto fault = reader.readBlock (info, blocks[i]); fault != PackageFault::none)
            return { fault, i + 1, reader.offset() };

    return {};
}

PackageVerdict loadPackage (const std::filesystem::path& file, upd_info_t& info, FirmwareBlocks& blocks)
{
    const auto [fault, bytes] = readPackageFile (file);

    if (fault != PackageFault::none)
        return { fault, 0, 0 };

    try
    {
        return parsePackage (bytes, info, blocks);
    }
    catch (const std::bad_alloc&)
    {
        return { PackageFault::outOfMemory, 0, 0 };
    }
}

std::uint32_t checkUPD (const std::filesystem::path& file, upd_info_t& info, FirmwareBlocks& blocks)
{
    return loadPackage (file, info, blocks).fault == PackageFault::none ? info.totalSize : 0;
}

} // namespace wqv
