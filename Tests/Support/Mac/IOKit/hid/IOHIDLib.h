// SPDX-License-Identifier: GPL-3.0-or-later
// A stand-in for IOKit's HID library: the documented types and functions that Mac/ uses, for tests on another system.

#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOReturn.h>

#include <cstdint>

constexpr IOOptionBits kIOHIDOptionsTypeNone = 0;
constexpr IOOptionBits kIOHIDOptionsTypeSeizeDevice = 1;

#define kIOHIDVendorIDKey "VendorID"
#define kIOHIDProductIDKey "ProductID"
#define kIOHIDVersionNumberKey "VersionNumber"
#define kIOHIDLocationIDKey "LocationID"
#define kIOHIDPrimaryUsagePageKey "PrimaryUsagePage"
#define kIOHIDPrimaryUsageKey "PrimaryUsage"
#define kIOHIDMaxInputReportSizeKey "MaxInputReportSize"
#define kIOHIDMaxOutputReportSizeKey "MaxOutputReportSize"

using IOHIDManagerRef = struct IoHidManager*;
using IOHIDDeviceRef = struct IoHidDevice*;

enum IOHIDReportType
{
    kIOHIDReportTypeInput = 0,
    kIOHIDReportTypeOutput
};

using IOHIDCallback = void (*) (void* context, IOReturn result, void* sender);
using IOHIDDeviceCallback = void (*) (void* context, IOReturn result, void* sender, IOHIDDeviceRef device);
using IOHIDReportCallback =
    void (*) (void*, IOReturn, void*, IOHIDReportType, std::uint32_t id, std::uint8_t* report, CFIndex length);

IOHIDManagerRef IOHIDManagerCreate (CFAllocatorRef allocator, IOOptionBits options);
IOReturn IOHIDManagerOpen (IOHIDManagerRef manager, IOOptionBits options);
IOReturn IOHIDManagerClose (IOHIDManagerRef manager, IOOptionBits options);
void IOHIDManagerSetDeviceMatchingMultiple (IOHIDManagerRef manager, CFArrayRef multiple);
CFSetRef IOHIDManagerCopyDevices (IOHIDManagerRef manager);
void IOHIDManagerRegisterDeviceMatchingCallback (IOHIDManagerRef manager, IOHIDDeviceCallback callback, void* context);
void IOHIDManagerRegisterDeviceRemovalCallback (IOHIDManagerRef manager, IOHIDDeviceCallback callback, void* context);
void IOHIDManagerScheduleWithRunLoop (IOHIDManagerRef manager, CFRunLoopRef runLoop, CFStringRef mode);
void IOHIDManagerUnscheduleFromRunLoop (IOHIDManagerRef manager, CFRunLoopRef runLoop, CFStringRef mode);

CFTypeID IOHIDDeviceGetTypeID();
CFTypeRef IOHIDDeviceGetProperty (IOHIDDeviceRef device, CFStringRef key);
io_service_t IOHIDDeviceGetService (IOHIDDeviceRef device);
IOReturn IOHIDDeviceOpen (IOHIDDeviceRef device, IOOptionBits options);
IOReturn IOHIDDeviceClose (IOHIDDeviceRef device, IOOptionBits options);
void IOHIDDeviceRegisterRemovalCallback (IOHIDDeviceRef device, IOHIDCallback callback, void* context);
void IOHIDDeviceRegisterInputReportCallback (
    IOHIDDeviceRef device, std::uint8_t* report, CFIndex reportLength, IOHIDReportCallback callback, void* context);
void IOHIDDeviceScheduleWithRunLoop (IOHIDDeviceRef device, CFRunLoopRef runLoop, CFStringRef mode);
void IOHIDDeviceUnscheduleFromRunLoop (IOHIDDeviceRef device, CFRunLoopRef runLoop, CFStringRef mode);
IOReturn IOHIDDeviceSetReport (
    IOHIDDeviceRef device, IOHIDReportType type, CFIndex reportId, const std::uint8_t* report, CFIndex reportLength);
