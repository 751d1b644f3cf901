// SPDX-License-Identifier: GPL-3.0-or-later
// Makes bytes from elsewhere safe to show: nothing in them can move the cursor or end the line.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace wqv
{

/** Bytes that are not printable ASCII, and the backslash, become \xNN. */
[[nodiscard]] std::string escapedBytes (std::span<const std::uint8_t> bytes);

/** Likewise for UTF-8, of which well-formed characters stay unless they are control characters. */
[[nodiscard]] std::string escapedText (std::string_view text);

} // namespace wqv
