// SPDX-License-Identifier: GPL-3.0-or-later
// What this process holds, as Linux and its C library say.

#include "ProcessSize.h"

#include <malloc.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace wqv
{
namespace
{

std::int64_t entriesOf (const char* folder)
{
    std::int64_t count = 0;

    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator (folder))
        ++count;

    return count;
}

} // namespace

ProcessSize processSize()
{
    std::int64_t total = 0;
    std::int64_t resident = 0;
    std::ifstream ("/proc/self/statm") >> total >> resident;

    const auto memory = mallinfo2();
    return { .heap = static_cast<std::int64_t> (memory.uordblks + memory.hblkhd),
             .resident = resident * sysconf (_SC_PAGESIZE),
             .descriptors = entriesOf ("/proc/self/fd"),
             .threads = entriesOf ("/proc/self/task") };
}

} // namespace wqv
