// SPDX-License-Identifier: GPL-3.0-or-later
// What this process holds: memory, file descriptors, threads.

#pragma once

#include <cstdint>

namespace wqv
{

struct ProcessSize
{
    std::int64_t heap = 0;     ///< bytes that are allocated; only where the system's own allocator is used
    std::int64_t resident = 0; ///< bytes in memory, of whatever kind
    std::int64_t descriptors = 0;
    std::int64_t threads = 0;
};

[[nodiscard]] ProcessSize processSize();

} // namespace wqv
