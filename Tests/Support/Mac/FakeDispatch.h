// SPDX-License-Identifier: GPL-3.0-or-later
// What a test does with the stand-in for libdispatch.

#pragma once

#include <cstddef>

namespace wqv
{

/** @returns whether a source heard of the signal */
bool raiseOnFakeMac (int signal);

/** How many sources there are that nobody has released. */
[[nodiscard]] std::size_t fakeSignalSources();

} // namespace wqv
