// SPDX-License-Identifier: GPL-3.0-or-later
// Replaces a file by the calls of Windows. The new file has the permissions that its folder gives to all.

#include "FileReplacement.h"

#include <windows.h>

#include <algorithm>
#include <array>

namespace wqv
{
namespace
{

namespace fs = std::filesystem;

std::error_code lastError()
{
    return { static_cast<int> (GetLastError()), std::system_category() };
}

std::error_code fill (const wchar_t* path, std::span<const std::uint8_t> bytes)
{
    const auto file = CreateFileW (path, GENERIC_WRITE, 0, nullptr, TRUNCATE_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);

    if (file == INVALID_HANDLE_VALUE)
        return lastError();

    std::error_code error;

    while (! error && ! bytes.empty())
    {
        constexpr std::size_t atOnce = 1 << 20;
        DWORD count = 0;

        if (! WriteFile (file, bytes.data(), static_cast<DWORD> (std::min (bytes.size(), atOnce)), &count, nullptr))
            error = lastError();

        bytes = bytes.subspan (count);
    }

    if (! error && ! FlushFileBuffers (file))
        error = lastError();

    if (! CloseHandle (file) && ! error)
        error = lastError();

    return error;
}

} // namespace

std::error_code replaceFile (const fs::path& place,
                             std::optional<fs::perms> /*permissions*/,
                             std::span<const std::uint8_t> bytes)
{
    const auto directory = place.has_parent_path() ? place.parent_path() : fs::path (".");
    std::array<wchar_t, MAX_PATH> path {};

    // Makes the file, under a name that nobody else has.
    if (GetTempFileNameW (directory.c_str(), L"wqv", 0, path.data()) == 0)
        return lastError();

    auto error = fill (path.data(), bytes);

    if (! error && ! MoveFileExW (path.data(), place.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        error = lastError();

    if (error)
        DeleteFileW (path.data());

    return error;
}

} // namespace wqv
