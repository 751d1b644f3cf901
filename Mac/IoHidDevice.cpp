// SPDX-License-Identifier: GPL-3.0-or-later
// Reading a device's ids, place and report sizes from its properties.

#include "IoHidDevice.h"

#include "CfPointer.h"

#include <IOKit/IOKitLib.h>

#include <algorithm>
#include <cassert>

namespace wqv
{
namespace
{

/** @param value  may be null */
std::int32_t numberIn (CFTypeRef value)
{
    std::int32_t number = 0;

    if (value != nullptr && CFGetTypeID (value) == CFNumberGetTypeID())
        CFNumberGetValue (static_cast<CFNumberRef> (value), kCFNumberSInt32Type, &number);

    return number;
}

std::int32_t property (IOHIDDeviceRef device, CFStringRef key)
{
    assert (CFGetTypeID (device) == IOHIDDeviceGetTypeID());
    return numberIn (IOHIDDeviceGetProperty (device, key));
}

/** Of the USB interface above the device. */
std::int32_t interfaceNumberOf (IOHIDDeviceRef device)
{
    const CfPointer<CFTypeRef> value (
        IORegistryEntrySearchCFProperty (IOHIDDeviceGetService (device),
                                         kIOServicePlane,
                                         CFSTR ("bInterfaceNumber"),
                                         kCFAllocatorDefault,
                                         kIORegistryIterateRecursively | kIORegistryIterateParents));
    return numberIn (value.get());
}

/** Keeps the order of signed numbers, by which devices are sorted here. */
std::uint64_t locationOf (IOHIDDeviceRef device)
{
    constexpr std::uint32_t signBit = 0x8000'0000;
    return static_cast<std::uint32_t> (IOHIDDevice_GetLocationID (device)) ^ signBit;
}

std::uint32_t lengthOf (IOHIDDeviceRef device, CFStringRef key)
{
    return static_cast<std::uint32_t> (std::max (0, property (device, key)));
}

} // namespace

std::int32_t IOHIDDevice_GetVendorID (IOHIDDeviceRef device)
{
    return property (device, CFSTR (kIOHIDVendorIDKey));
}

std::int32_t IOHIDDevice_GetProductID (IOHIDDeviceRef device)
{
    return property (device, CFSTR (kIOHIDProductIDKey));
}

std::int32_t IOHIDDevice_GetVersionNumber (IOHIDDeviceRef device)
{
    return property (device, CFSTR (kIOHIDVersionNumberKey));
}

std::int32_t IOHIDDevice_GetLocationID (IOHIDDeviceRef device)
{
    return property (device, CFSTR (kIOHIDLocationIDKey));
}

HidDevice describeIoHidDevice (IOHIDDeviceRef device)
{
    return { .vendorId = IOHIDDevice_GetVendorID (device),
             .productId = IOHIDDevice_GetProductID (device),
             .versionNumber = IOHIDDevice_GetVersionNumber (device),
             .location = locationOf (device),
             .interfaceNumber = interfaceNumberOf (device),
             .inputReportLength = lengthOf (device, CFSTR (kIOHIDMaxInputReportSizeKey)),
             .outputReportLength = lengthOf (device, CFSTR (kIOHIDMaxOutputReportSizeKey)) };
}

} // namespace wqv
