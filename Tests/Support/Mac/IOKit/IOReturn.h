// SPDX-License-Identifier: GPL-3.0-or-later
// A stand-in for what all of IOKit shares: the results of its functions, and types.

#pragma once

#include <cstdint>

using IOReturn = int;
using IOOptionBits = std::uint32_t;
using io_service_t = unsigned;
using io_registry_entry_t = unsigned;

constexpr IOReturn ioReturn (unsigned number)
{
    return static_cast<IOReturn> (0xE0000000U | number);
}

constexpr IOReturn kIOReturnSuccess = 0;
constexpr IOReturn kIOReturnNoDevice = ioReturn (0x2C0);
constexpr IOReturn kIOReturnNotPrivileged = ioReturn (0x2C1);
constexpr IOReturn kIOReturnExclusiveAccess = ioReturn (0x2C5);
constexpr IOReturn kIOReturnBusy = ioReturn (0x2D5);
constexpr IOReturn kIOReturnTimeout = ioReturn (0x2D6);
constexpr IOReturn kIOReturnNotPermitted = ioReturn (0x2E2);
