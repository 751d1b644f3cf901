// SPDX-License-Identifier: GPL-3.0-or-later
// What the stand-ins for IOKit's HID library and power management do.

#include "CfObjects.h"

#include <IOKit/IOKitLib.h>
#include <IOKit/pwr_mgt/IOPMLib.h>

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>

using wqv::FakeMac;

namespace
{

wqv::FakeMac::Numbers numbersIn (CFTypeRef dictionary)
{
    const auto& values = static_cast<CFDictionaryRef> (dictionary)->values;
    wqv::FakeMac::Numbers numbers;

    for (std::size_t i = 0; i < values.size(); i += 2)
        numbers[static_cast<CFStringRef> (values[i])->text] = static_cast<CFNumberRef> (values[i + 1])->value;

    return numbers;
}

} // namespace

CFTypeID IOHIDDeviceGetTypeID()
{
    return deviceType;
}

IOHIDManagerRef IOHIDManagerCreate (CFAllocatorRef, IOOptionBits)
{
    EXPECT_EQ (FakeMac::get().manager, nullptr) << "a second manager";
    return FakeMac::get().manager = make<IoHidManager> ("IOHIDManagerCreate");
}

IOReturn IOHIDManagerOpen (IOHIDManagerRef manager, IOOptionBits)
{
    EXPECT_FALSE (manager->isOpen);
    const auto error = FakeMac::get().failureOf ("IOHIDManagerOpen");
    manager->isOpen = ! error;
    return error.value_or (kIOReturnSuccess);
}

IOReturn IOHIDManagerClose (IOHIDManagerRef manager, IOOptionBits)
{
    manager->isOpen = false;
    return kIOReturnSuccess;
}

void IOHIDManagerSetDeviceMatchingMultiple (IOHIDManagerRef, CFArrayRef multiple)
{
    FakeMac::get().matching.clear();
    FakeMac::get().matchesAll = multiple == nullptr;

    if (multiple != nullptr)
        std::ranges::transform (multiple->values, std::back_inserter (FakeMac::get().matching), numbersIn);
}

CFSetRef IOHIDManagerCopyDevices (IOHIDManagerRef)
{
    if (FakeMac::get().attached.empty() && FakeMac::get().leaving.empty())
        return nullptr;

    auto* const set = make<CfSet> ("");

    for (auto* const device : FakeMac::get().leaving)
        set->add (device);

    for (const auto& [number, device] : FakeMac::get().attached)
        set->add (device);

    return set;
}

void IOHIDManagerRegisterDeviceMatchingCallback (IOHIDManagerRef manager, IOHIDDeviceCallback callback, void* context)
{
    manager->onMatching = { callback, context };

    if (callback != nullptr)
        for (const auto& [number, device] : FakeMac::get().attached)
            FakeMac::get().tellOfAttached (device);
}

void IOHIDManagerRegisterDeviceRemovalCallback (IOHIDManagerRef manager, IOHIDDeviceCallback callback, void* context)
{
    manager->onRemoval = { callback, context };
}

void IOHIDManagerScheduleWithRunLoop (IOHIDManagerRef manager, CFRunLoopRef runLoop, CFStringRef mode)
{
    EXPECT_TRUE (runLoop == FakeMac::get().currentRunLoop() && mode == kCFRunLoopCommonModes);
    EXPECT_FALSE (std::exchange (manager->isScheduled, true));
    ++FakeMac::get().scheduled;
}

void IOHIDManagerUnscheduleFromRunLoop (IOHIDManagerRef manager, CFRunLoopRef runLoop, CFStringRef mode)
{
    EXPECT_TRUE (runLoop == FakeMac::get().currentRunLoop() && mode == kCFRunLoopCommonModes);
    EXPECT_TRUE (std::exchange (manager->isScheduled, false));
    --FakeMac::get().scheduled;
}

CFTypeRef IOHIDDeviceGetProperty (IOHIDDeviceRef device, CFStringRef key)
{
    const auto found = device->numbers.find (key->text);
    return found != device->numbers.end() && key->text != "bInterfaceNumber" ? found->second : nullptr;
}

io_service_t IOHIDDeviceGetService (IOHIDDeviceRef device)
{
    return static_cast<io_service_t> (device->number);
}

CFTypeRef IORegistryEntrySearchCFProperty (
    io_registry_entry_t entry, const char* plane, CFStringRef key, CFAllocatorRef, IOOptionBits options)
{
    EXPECT_STREQ (plane, kIOServicePlane);
    EXPECT_EQ (options, kIORegistryIterateRecursively | kIORegistryIterateParents);
    const auto device = FakeMac::get().attached.find (static_cast<int> (entry));

    if (device == FakeMac::get().attached.end())
        return nullptr;

    const auto& numbers = device->second->numbers;
    const auto found = numbers.find (key->text);
    return found != numbers.end() ? CFRetain (found->second) : nullptr;
}

IOReturn IOHIDDeviceOpen (IOHIDDeviceRef device, IOOptionBits)
{
    if (const auto error = FakeMac::get().failureOf ("IOHIDDeviceOpen"))
        return *error;

    if (! FakeMac::get().isAttached (device))
        return kIOReturnNoDevice;

    ++FakeMac::get().opened;
    return kIOReturnSuccess;
}

IOReturn IOHIDDeviceClose (IOHIDDeviceRef, IOOptionBits)
{
    const std::scoped_lock guard (objectLock);
    --FakeMac::get().opened;
    return kIOReturnSuccess;
}

void IOHIDDeviceRegisterRemovalCallback (IOHIDDeviceRef device, IOHIDCallback callback, void* context)
{
    device->onRemoval = { callback, context };
}

void IOHIDDeviceRegisterInputReportCallback (
    IOHIDDeviceRef device, std::uint8_t* report, CFIndex reportLength, IOHIDReportCallback callback, void* context)
{
    device->buffer = report;
    device->bufferSize = reportLength;
    device->onReport = { callback, context };
}

void IOHIDDeviceScheduleWithRunLoop (IOHIDDeviceRef device, CFRunLoopRef runLoop, CFStringRef mode)
{
    EXPECT_TRUE (runLoop == FakeMac::get().currentRunLoop() && mode == kCFRunLoopCommonModes);
    EXPECT_FALSE (std::exchange (device->isScheduled, true));
    ++FakeMac::get().scheduled;
}

void IOHIDDeviceUnscheduleFromRunLoop (IOHIDDeviceRef device, CFRunLoopRef runLoop, CFStringRef mode)
{
    EXPECT_TRUE (runLoop == FakeMac::get().currentRunLoop() && mode == kCFRunLoopCommonModes);
    EXPECT_TRUE (std::exchange (device->isScheduled, false));
    --FakeMac::get().scheduled;
}

IOReturn IOHIDDeviceSetReport (
    IOHIDDeviceRef device, IOHIDReportType type, CFIndex reportId, const std::uint8_t* report, CFIndex reportLength)
{
    const std::scoped_lock guard (objectLock);

    if (const auto error = FakeMac::get().failureOf ("IOHIDDeviceSetReport"))
        return *error;

    if (! FakeMac::get().isAttached (device))
        return kIOReturnNoDevice;

    EXPECT_TRUE (type == kIOHIDReportTypeOutput && reportId == 0);
    FakeMac::get().written.emplace_back (report, report + reportLength);
    return kIOReturnSuccess;
}

IOReturn IOPMAssertionCreateWithName (CFStringRef type, IOPMAssertionLevel level, CFStringRef name, IOPMAssertionID* id)
{
    if (const auto error = FakeMac::get().failureOf ("IOPMAssertionCreateWithName"))
        return *error;

    EXPECT_EQ (level, kIOPMAssertionLevelOn);
    *id = static_cast<IOPMAssertionID> (FakeMac::get().assertions.size()) + 1;
    FakeMac::get().assertions[*id] = type->text + ": " + name->text;
    return kIOReturnSuccess;
}

IOReturn IOPMAssertionRelease (IOPMAssertionID id)
{
    EXPECT_EQ (FakeMac::get().assertions.erase (id), 1u);
    return kIOReturnSuccess;
}
