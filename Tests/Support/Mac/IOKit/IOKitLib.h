// SPDX-License-Identifier: GPL-3.0-or-later
// A stand-in for IOKit's registry: the documented function that Mac/ uses, for tests on another system.

#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOReturn.h>

constexpr IOOptionBits kIORegistryIterateRecursively = 1;
constexpr IOOptionBits kIORegistryIterateParents = 2;

#define kIOServicePlane "IOService"

CFTypeRef IORegistryEntrySearchCFProperty (
    io_registry_entry_t entry, const char* plane, CFStringRef key, CFAllocatorRef allocator, IOOptionBits options);
