// SPDX-License-Identifier: GPL-3.0-or-later
// A stand-in for the embedded pictures: there is one, and it is empty.

#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace wqv
{

inline constexpr std::array<std::span<const std::uint8_t>, 1> imageList;

} // namespace wqv
