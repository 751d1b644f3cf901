// SPDX-License-Identifier: GPL-3.0-or-later
// What a HID report descriptor says about the size of output reports.

#pragma once

#include <cstdint>
#include <span>

namespace wqv
{

/** The bytes of the largest output report of a device, without its report id; 0 when it has none. The descriptor is in
    the format of the USB Device Class Definition for HID 1.11, chapter 6.2.2. Total: any bytes give a number. */
[[nodiscard]] std::uint32_t outputReportLengthOf (std::span<const std::uint8_t> descriptor);

} // namespace wqv
