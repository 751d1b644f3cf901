// SPDX-License-Identifier: GPL-3.0-or-later
// The HID devices that Windows lists, and the description of one.

#pragma once

#include "HidService.h"

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wqv
{

/** The class of device interfaces that HID devices belong to. */
[[nodiscard]] GUID hidInterfaceClass();

/** The paths of the devices that are attached now, in lower case: Windows does not always write a path in the same way. */
[[nodiscard]] std::vector<std::wstring> presentHidInterfaces();

/** @returns the path of a device in lower case */
[[nodiscard]] std::wstring normalised (std::wstring_view path);

/** Describes a device, with the id left 0. It is not opened for reports, so it does not matter who holds it.
    @returns nothing if it does not tell its ids */
[[nodiscard]] std::optional<HidDevice> describeHidInterface (const std::wstring& path);

/** The number of the USB interface in a device's path, as 1 in "...&mi_01#..."; 0 if the USB device has but one. */
[[nodiscard]] std::int32_t interfaceNumberIn (const std::wstring& path);

/** Orders USB devices by where they are plugged in: by the host controller, then port by port.
    @param path  of locations, as "PCIROOT(0)#PCI(1400)#USBROOT(0)#USB(3)#USB(2)" */
[[nodiscard]] std::uint64_t usbLocation (const std::wstring& path);

} // namespace wqv
