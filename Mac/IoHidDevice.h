// SPDX-License-Identifier: GPL-3.0-or-later
// The description of a HID device from its properties in IOKit.

#pragma once

#include "HidService.h"

#include <IOKit/hid/IOHIDLib.h>

#include <cstdint>

namespace wqv
{

/** A property of a device as a signed number of 32 bits; 0 when there is none, or it is not a number. */
[[nodiscard]] std::int32_t IOHIDDevice_GetVendorID (IOHIDDeviceRef device);
[[nodiscard]] std::int32_t IOHIDDevice_GetProductID (IOHIDDeviceRef device);
[[nodiscard]] std::int32_t IOHIDDevice_GetVersionNumber (IOHIDDeviceRef device);
[[nodiscard]] std::int32_t IOHIDDevice_GetLocationID (IOHIDDeviceRef device);

/** Describes a device; its id is left 0. */
[[nodiscard]] HidDevice describeIoHidDevice (IOHIDDeviceRef device);

} // namespace wqv
