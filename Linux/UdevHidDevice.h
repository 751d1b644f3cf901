// SPDX-License-Identifier: GPL-3.0-or-later
// The description of a USB HID device from its hidraw node's parents in sysfs.

#pragma once

#include "HidService.h"

#include <libudev.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace wqv
{

/** Gives a libudev object back. */
struct UdevRelease
{
    void operator() (udev* object) const { udev_unref (object); }
    void operator() (udev_device* object) const { udev_device_unref (object); }
    void operator() (udev_enumerate* object) const { udev_enumerate_unref (object); }
    void operator() (udev_monitor* object) const { udev_monitor_unref (object); }
};

template <typename Object>
using UdevPointer = std::unique_ptr<Object, UdevRelease>;

/** Where a device is plugged in, as HidDevice::location has it: the bus, then the ports on the way to the device, a byte each.
    "2" and "1.4" are 0x0201040000000000.
    @param bus    the attribute busnum
    @param ports  the attribute devpath */
[[nodiscard]] std::uint64_t usbLocation (std::string_view bus, std::string_view ports);

/** Describes the USB device behind a hidraw node; its id is left 0.
    @returns nothing for a device that is not a USB device, or is no longer there */
[[nodiscard]] std::optional<HidDevice> describeUsbHidDevice (udev_device& hidraw);

} // namespace wqv
