// SPDX-License-Identifier: GPL-3.0-or-later
// The sizes of reports that a HID report descriptor defines.

#pragma once

#include <cstdint>
#include <span>

namespace wqv
{

/** The bytes of the largest reports of a device, without their report ids; 0 when it has none. */
struct ReportLengths
{
    std::uint32_t input = 0;
    std::uint32_t output = 0;
};

/** Reads a descriptor in the format of the USB Device Class Definition for HID 1.11, chapter 6.2.2. Total: any bytes
    give two numbers. */
[[nodiscard]] ReportLengths reportLengthsOf (std::span<const std::uint8_t> descriptor);

} // namespace wqv
