// SPDX-License-Identifier: GPL-3.0-or-later
// Counts what the program takes from the heap.

#pragma once

#include <cstdint>

namespace wqv
{

/** How often memory was allocated by C++ in this process, by all threads but those that are left out. Any thread. */
[[nodiscard]] std::uint64_t allocationCount();

/** From here on what the calling thread allocates does not count. */
void leaveOutAllocationsOfThisThread();

} // namespace wqv
