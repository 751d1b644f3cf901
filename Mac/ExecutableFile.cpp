// SPDX-License-Identifier: GPL-3.0-or-later
// The executable's path, from the dynamic loader.

#include "ExecutableFile.h"

#include "Complaint.h"

#include <dlfcn.h>
#include <string>
#include <system_error>

namespace wqv
{

std::filesystem::path getExecutableFile()
{
    Dl_info image {};
    auto error = std::make_error_code (std::errc::no_such_file_or_directory);
    std::filesystem::path file;

    if (dladdr (reinterpret_cast<const void*> (&getExecutableFile), &image) != 0 && image.dli_fname != nullptr)
        file = std::filesystem::canonical (image.dli_fname, error);

    if (error)
        complain ("no update is found, since the system does not tell where this program lies: " + error.message());

    return file;
}

} // namespace wqv
