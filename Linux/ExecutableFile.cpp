// SPDX-License-Identifier: GPL-3.0-or-later
// The kernel knows where this program lies; the dynamic loader only knows what it was called by.

#include "ExecutableFile.h"

#include <system_error>

namespace wqv
{

std::filesystem::path getExecutableFile()
{
    std::error_code error;
    return std::filesystem::read_symlink ("/proc/self/exe", error);
}

} // namespace wqv
