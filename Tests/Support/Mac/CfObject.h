// SPDX-License-Identifier: GPL-3.0-or-later
// An object of the made-up Mac, of whatever type.

#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

enum Type : CFTypeID
{
    otherType,
    stringType,
    numberType,
    arrayType,
    deviceType
};

/** What a reference points to. It stays there until the made-up Mac ends, so that the use of one that is gone is seen. */
struct CfObject
{
    static constexpr int forEver = -1; ///< the owners of a constant

    Type type = otherType;
    std::string text {};
    std::int32_t number = 0; ///< a number's; of a device or a source of signals, which one it is

    // They are retained.
    std::vector<CFTypeRef> elements {};
    std::map<std::string, CFTypeRef> values {}; ///< of a dictionary, and of a device's properties

    int owners = 1;
};

/** A new object for its one owner. */
template <typename Reference>
Reference make (CfObject object);

/** The object that a reference points to; if it is gone, the test fails. */
CfObject& objectAt (CFTypeRef reference);
