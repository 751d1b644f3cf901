// SPDX-License-Identifier: GPL-3.0-or-later
// A stand-in for IOKit's power management: the documented functions that Mac/ uses, for tests on another system.

#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOReturn.h>

#include <cstdint>

using IOPMAssertionID = std::uint32_t;
using IOPMAssertionLevel = std::uint32_t;

constexpr IOPMAssertionID kIOPMNullAssertionID = 0;
constexpr IOPMAssertionLevel kIOPMAssertionLevelOn = 255;

#define kIOPMAssertionTypePreventUserIdleSystemSleep CFSTR ("PreventUserIdleSystemSleep")

IOReturn IOPMAssertionCreateWithName (CFStringRef type,
                                      IOPMAssertionLevel level,
                                      CFStringRef name,
                                      IOPMAssertionID* id);
IOReturn IOPMAssertionRelease (IOPMAssertionID id);
