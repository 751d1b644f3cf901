// SPDX-License-Identifier: GPL-3.0-or-later
// The executable's path, as the system loaded it.

#include "ExecutableFile.h"

#include "Complaint.h"

#include <windows.h>

#include <string>
#include <system_error>

namespace wqv
{

std::filesystem::path getExecutableFile()
{
    constexpr DWORD longestPath = 32768; // with its end
    std::wstring path (longestPath, L'\0');
    path.resize (GetModuleFileNameW (nullptr, path.data(), longestPath));

    std::error_code error (static_cast<int> (path.empty() ? GetLastError() : ERROR_SUCCESS), std::system_category());

    if (error)
    {
        complain ("no update is found, since the system does not tell where this program lies: " + error.message());
        return {};
    }

    // On a volume that does not tell what a link leads to, it is the file as it was started.
    const auto file = std::filesystem::canonical (path, error);
    return error ? std::filesystem::path (path) : file;
}

} // namespace wqv
