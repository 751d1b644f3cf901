// SPDX-License-Identifier: GPL-3.0-or-later
// What this process holds: memory, file descriptors, threads.

#pragma once

#include <malloc.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace wqv
{

using Counts = std::map<std::string, std::int64_t>;

/** By name: "heap", bytes that are allocated, which only the system's own allocator knows; "resident", bytes in memory, of whatever
    kind; "descriptors"; "threads". */
[[nodiscard]] inline Counts processSize()
{
    const auto entriesOf = [] (const char* folder)
    { return std::distance (std::filesystem::directory_iterator (folder), std::filesystem::directory_iterator()); };

    std::int64_t total = 0;
    std::int64_t resident = 0;
    std::ifstream ("/proc/self/statm") >> total >> resident;
    const auto memory = mallinfo2();

    return { { "heap", static_cast<std::int64_t> (memory.uordblks + memory.hblkhd) },
             { "resident", resident * sysconf (_SC_PAGESIZE) },
             { "descriptors", entriesOf ("/proc/self/fd") },
             { "threads", entriesOf ("/proc/self/task") } };
}

} // namespace wqv
