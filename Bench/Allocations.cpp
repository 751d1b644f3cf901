// SPDX-License-Identifier: GPL-3.0-or-later
// The process's operator new, with a counter.

#include "Allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace
{

std::atomic<std::uint64_t> allocations { 0 };
thread_local bool isLeftOut = false;

} // namespace

namespace wqv
{

std::uint64_t allocationCount()
{
    return allocations;
}

void leaveOutAllocationsOfThisThread()
{
    isLeftOut = true;
}

} // namespace wqv

void* operator new (std::size_t size)
{
    if (! isLeftOut)
        ++allocations;

    if (auto* const memory =
            std::malloc (size > 0 ? size : 1)) // NOLINT (cppcoreguidelines-no-malloc): this is new itself
        return memory;

    throw std::bad_alloc();
}

void operator delete (void* memory) noexcept
{
    std::free (memory); // NOLINT (cppcoreguidelines-no-malloc): this is delete itself
}

void operator delete (void* memory, std::size_t) noexcept
{
    std::free (memory); // NOLINT (cppcoreguidelines-no-malloc): this is delete itself
}
