// SPDX-License-Identifier: GPL-3.0-or-later
// A controller's firmware version, as a device descriptor's BCD number and as text.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace wqv
{

/** 0x0105 for 1.05; nothing for a text that is not a digit, a point and two digits. */
[[nodiscard]] std::optional<std::int32_t> parseFirmwareVersion (std::string_view text);

/** 1.05 for 0x0105; higher digits are dropped. */
[[nodiscard]] std::string firmwareVersionText (std::int32_t bcd);

} // namespace wqv
