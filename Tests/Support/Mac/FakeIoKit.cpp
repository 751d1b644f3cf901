// SPDX-License-Identifier: GPL-3.0-or-later
// What the stand-ins for IOKit's HID library and power management do.

#include "FakeMac.h"

#include <IOKit/IOKitLib.h>
#include <IOKit/pwr_mgt/IOPMLib.h>

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <tuple>

using wqv::FakeMac;

namespace
{

FakeMac::Manager& managerAt (IOHIDManagerRef manager)
{
    EXPECT_EQ (&objectAt (manager), FakeMac::get().manager.object);
    return FakeMac::get().manager;
}

FakeMac::Device& deviceAt (IOHIDDeviceRef device)
{
    return FakeMac::get().devices.at (static_cast<std::size_t> (objectAt (device).number));
}

FakeMac::Numbers numbersIn (CFTypeRef dictionary)
{
    FakeMac::Numbers numbers;

    for (const auto& [name, value] : objectAt (dictionary).values)
        numbers[name] = objectAt (value).number;

    return numbers;
}

/** @returns null if there is none */
CFTypeRef propertyOf (IOHIDDeviceRef device, const std::string& name)
{
    const auto found = objectAt (device).values.find (name);
    return found != objectAt (device).values.end() ? found->second : nullptr;
}

void schedule (bool& isScheduled, bool isWanted, CFRunLoopRef runLoop, CFStringRef mode)
{
    EXPECT_TRUE (runLoop == FakeMac::get().runLoop && mode == kCFRunLoopCommonModes);
    EXPECT_NE (std::exchange (isScheduled, isWanted), isWanted);
}

} // namespace

CFTypeID IOHIDDeviceGetTypeID()
{
    return deviceType;
}

IOHIDManagerRef IOHIDManagerCreate (CFAllocatorRef, IOOptionBits)
{
    auto& manager = FakeMac::get().manager;
    EXPECT_TRUE (manager.object == nullptr || manager.object->owners == 0) << "a second manager";

    if (FakeMac::get().failureOf (__func__))
        return nullptr;

    const auto reference = make<IOHIDManagerRef> ({});
    manager = { .object = &objectAt (reference) };
    return reference;
}

IOReturn IOHIDManagerOpen (IOHIDManagerRef manager, IOOptionBits)
{
    const auto error = FakeMac::get().failureOf (__func__);
    EXPECT_FALSE (std::exchange (managerAt (manager).isOpen, ! error));
    return error.value_or (kIOReturnSuccess);
}

IOReturn IOHIDManagerClose (IOHIDManagerRef manager, IOOptionBits)
{
    managerAt (manager).isOpen = false;
    return kIOReturnSuccess;
}

void IOHIDManagerSetDeviceMatchingMultiple (IOHIDManagerRef manager, CFArrayRef multiple)
{
    std::ignore = managerAt (manager);
    FakeMac::get().matching.clear();
    FakeMac::get().matchesAll = multiple == nullptr;

    if (multiple != nullptr)
        std::ranges::transform (objectAt (multiple).elements, std::back_inserter (FakeMac::get().matching), numbersIn);
}

CFSetRef IOHIDManagerCopyDevices (IOHIDManagerRef manager)
{
    std::ignore = managerAt (manager);
    CfObject set;

    for (const auto& device : FakeMac::get().devices)
        if (device.isListed)
            set.elements.push_back (CFRetain (device.reference));

    return set.elements.empty() ? nullptr : make<CFSetRef> (std::move (set));
}

void IOHIDManagerRegisterDeviceMatchingCallback (IOHIDManagerRef manager, IOHIDDeviceCallback callback, void* context)
{
    managerAt (manager).onMatching = { callback, context };

    if (callback != nullptr)
        for (auto& device : FakeMac::get().devices)
            FakeMac::get().tellOfAttached (device);
}

void IOHIDManagerRegisterDeviceRemovalCallback (IOHIDManagerRef manager, IOHIDDeviceCallback callback, void* context)
{
    managerAt (manager).onRemoval = { callback, context };
}

void IOHIDManagerScheduleWithRunLoop (IOHIDManagerRef manager, CFRunLoopRef runLoop, CFStringRef mode)
{
    schedule (managerAt (manager).isScheduled, true, runLoop, mode);
}

void IOHIDManagerUnscheduleFromRunLoop (IOHIDManagerRef manager, CFRunLoopRef runLoop, CFStringRef mode)
{
    schedule (managerAt (manager).isScheduled, false, runLoop, mode);
}

CFTypeRef IOHIDDeviceGetProperty (IOHIDDeviceRef device, CFStringRef key)
{
    const auto& name = objectAt (key).text;
    return name != "bInterfaceNumber" ? propertyOf (device, name) : nullptr;
}

io_service_t IOHIDDeviceGetService (IOHIDDeviceRef device)
{
    return static_cast<io_service_t> (objectAt (device).number);
}

CFTypeRef IORegistryEntrySearchCFProperty (
    io_registry_entry_t entry, const char* plane, CFStringRef key, CFAllocatorRef, IOOptionBits options)
{
    EXPECT_STREQ (plane, kIOServicePlane);
    EXPECT_EQ (options, kIORegistryIterateRecursively | kIORegistryIterateParents);
    const auto* const value = propertyOf (FakeMac::get().devices.at (entry).reference, objectAt (key).text);
    return value != nullptr ? CFRetain (value) : nullptr;
}

IOReturn IOHIDDeviceOpen (IOHIDDeviceRef device, IOOptionBits)
{
    if (const auto error = FakeMac::get().failureOf (__func__))
        return *error;

    if (! deviceAt (device).isAttached)
        return kIOReturnNoDevice;

    ++FakeMac::get().opened;
    return kIOReturnSuccess;
}

IOReturn IOHIDDeviceClose (IOHIDDeviceRef device, IOOptionBits)
{
    std::ignore = deviceAt (device);
    --FakeMac::get().opened;
    return kIOReturnSuccess;
}

void IOHIDDeviceRegisterRemovalCallback (IOHIDDeviceRef device, IOHIDCallback callback, void* context)
{
    deviceAt (device).onRemoval = { callback, context };
}

void IOHIDDeviceRegisterInputReportCallback (
    IOHIDDeviceRef device, std::uint8_t* report, CFIndex reportLength, IOHIDReportCallback callback, void* context)
{
    deviceAt (device).buffer = report;
    deviceAt (device).bufferSize = reportLength;
    deviceAt (device).onReport = { callback, context };
}

void IOHIDDeviceScheduleWithRunLoop (IOHIDDeviceRef device, CFRunLoopRef runLoop, CFStringRef mode)
{
    schedule (deviceAt (device).isScheduled, true, runLoop, mode);
}

void IOHIDDeviceUnscheduleFromRunLoop (IOHIDDeviceRef device, CFRunLoopRef runLoop, CFStringRef mode)
{
    schedule (deviceAt (device).isScheduled, false, runLoop, mode);
}

IOReturn IOHIDDeviceSetReport (
    IOHIDDeviceRef device, IOHIDReportType type, CFIndex reportId, const std::uint8_t* report, CFIndex reportLength)
{
    if (const auto error = FakeMac::get().failureOf (__func__))
        return *error;

    if (! deviceAt (device).isAttached)
        return kIOReturnNoDevice;

    EXPECT_TRUE (type == kIOHIDReportTypeOutput && reportId == 0);
    FakeMac::get().written.emplace_back (report, report + reportLength);
    return kIOReturnSuccess;
}

IOReturn IOPMAssertionCreateWithName (CFStringRef type, IOPMAssertionLevel level, CFStringRef name, IOPMAssertionID* id)
{
    if (const auto error = FakeMac::get().failureOf (__func__))
        return *error;

    EXPECT_EQ (level, kIOPMAssertionLevelOn);
    *id = static_cast<IOPMAssertionID> (FakeMac::get().assertions.size()) + 1;
    FakeMac::get().assertions[*id] = objectAt (type).text + ": " + objectAt (name).text;
    return kIOReturnSuccess;
}

IOReturn IOPMAssertionRelease (IOPMAssertionID id)
{
    EXPECT_EQ (FakeMac::get().assertions.erase (id), 1u);
    return kIOReturnSuccess;
}
