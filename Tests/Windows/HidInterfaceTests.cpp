// SPDX-License-Identifier: GPL-3.0-or-later
// What is read out of a HID device's path and of its path of locations.

#include "HidInterface.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

namespace wqv
{
namespace
{

TEST (HidInterface, theNumberOfTheInterface)
{
    const std::wstring behind = L"#8&1c2b3a4f&0&0000#{4d1e55b2-f16f-11cf-88cb-001111000030}";

    EXPECT_EQ (interfaceNumberIn (normalised (L"\\\\?\\HID#VID_1209&PID_0001&MI_01" + behind)), 1);
    EXPECT_EQ (interfaceNumberIn (L"\\\\?\\hid#vid_1209&pid_0001&mi_0a&col02" + behind), 10);
    EXPECT_EQ (interfaceNumberIn (L"\\\\?\\hid#vid_1209&pid_0001" + behind), 0);
    EXPECT_EQ (interfaceNumberIn (L"&mi_"), 0);
    EXPECT_EQ (normalised (L"\\\\?\\HID#VID_1209&PID_0001&MI_01#8&1C"), L"\\\\?\\hid#vid_1209&pid_0001&mi_01#8&1c");
}

TEST (HidInterface, devicesAreOrderedByWhereTheyArePluggedIn)
{
    const std::wstring host = L"PCIROOT(0)#PCI(1400)#USBROOT(0)";

    // By the host controller, behind a bridge or not, then port by port.
    const std::vector<std::wstring> inOrder { host + L"#USB(2)",
                                              host + L"#USB(2)#USB(9)#USB(4)#USB(1)#USB(1)#USB(1)",
                                              host + L"#USB(2)#USB(9)#USB(4)#USB(1)#USB(1)#USB(2)",
                                              host + L"#USB(2)#USB(10)",
                                              host + L"#USB(10)",
                                              L"PCIROOT(0)#PCI(1401)#USBROOT(0)#USB(1)",
                                              L"PCIROOT(0)#PCI(0801)#PCI(0003)#USBROOT(0)#USB(1)",
                                              L"PCIROOT(0)#PCI(0801)#PCI(0004)#USBROOT(0)#USB(1)",
                                              L"PCIROOT(0)#PCI(1C00)#PCI(0000)#USBROOT(0)#USB(1)" };
    std::vector<std::uint64_t> locations;
    std::ranges::transform (inOrder, std::back_inserter (locations), usbLocation);
    EXPECT_EQ (std::ranges::adjacent_find (locations, std::ranges::greater_equal()), locations.end())
        << testing::PrintToString (locations);

    // All interfaces of a device are at its place.
    EXPECT_EQ (usbLocation (host + L"#USB(2)#USBMI(1)"), locations.front());
}

TEST (HidInterface, whatIsNotOnUsbHasNoPlaceThere)
{
    for (const auto* const path :
         { L"", L"PCIROOT(0)#PCI(1400)", L"PCIROOT(0)#PCI(1400)#USBROOT(0)", L"ACPI(_SB_)#ACPI(I2C0)" })
        EXPECT_EQ (usbLocation (path), 0U);
}

} // namespace
} // namespace wqv
