// SPDX-License-Identifier: GPL-3.0-or-later
// The executable's path, from /proc/self/exe.

#include "ExecutableFile.h"

#include "Complaint.h"

#include <system_error>

namespace wqv
{

std::filesystem::path getExecutableFile()
{
    std::error_code error;
    auto file = std::filesystem::read_symlink ("/proc/self/exe", error);

    if (error)
        complain ("no update is found, since the system does not tell where this program lies: " + error.message());

    return file;
}

} // namespace wqv
