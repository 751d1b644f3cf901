// SPDX-License-Identifier: GPL-3.0-or-later
// What is read out of a USB device's attributes: its place, and the sizes of its reports.

#include "ReportDescriptor.h"
#include "UdevHidDevice.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace wqv
{
namespace
{

TEST (UdevHidDeviceTests, SortsDevicesByBusAndPorts)
{
    EXPECT_EQ (usbLocation ("2", "1.4"), 0x02'01'04'00'00'00'00'00);
    EXPECT_EQ (usbLocation ("2", "1.10"), 0x02'01'0A'00'00'00'00'00);
    EXPECT_EQ (usbLocation ("10", "1.2.3.4.5.6.7.8"), 0x0A'01'02'03'04'05'06'07);
    EXPECT_EQ (usbLocation ("", ""), 0);
}

TEST (UdevHidDeviceTests, FindsTheLargestReportOfAnyDescriptor)
{
    // clang-format off
    const std::tuple<std::vector<std::uint8_t>, std::uint32_t, std::uint32_t> cases[] {
        { {}, 0, 0 },
        { { 0x75, 0x08, 0x95, 0x80, 0x81, 0x02, 0x91, 0x02 }, 128, 128 },                         // both of 128 bytes
        { { 0x75, 0x08, 0x85, 1, 0x95, 2, 0x81, 2, 0x85, 2, 0x95, 3, 0x81, 2, 0x81, 2 }, 6, 0 },  // by report id
        { { 0xFE, 2, 0, 0x75, 0x08, 0x75, 0x08, 0x96, 0x00, 0x01, 0x91, 0x02 }, 0, 256 },         // after a long item
        { { 0x75, 0x08, 0x95, 0x40, 0x91, 0x02, 0x96, 0x00 }, 0, 64 },                            // cut off
        { { 0x77, 0, 0, 0, 0x80, 0x97, 0, 0, 0, 0x80, 0x81, 2, 0x81, 2, 0x81, 2, 0x81, 2 }, 0xFFFF, 0 } // 2^64 bits
    };
    // clang-format on

    for (const auto& [descriptor, input, output] : cases)
    {
        const auto lengths = reportLengthsOf (descriptor);
        EXPECT_EQ (lengths.input, input) << testing::PrintToString (descriptor);
        EXPECT_EQ (lengths.output, output) << testing::PrintToString (descriptor);
    }
}

} // namespace
} // namespace wqv
