// SPDX-License-Identifier: GPL-3.0-or-later
// The objects of the made-up Mac, and the count of their owners.

#pragma once

#include "FakeMac.h"

#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

enum Type : CFTypeID
{
    stringType = 1,
    numberType,
    arrayType,
    dictionaryType,
    setType,
    runLoopType,
    managerType,
    deviceType
};

/** What all objects are. */
struct CfObject
{
    static constexpr int forEver = -1; ///< the owners of a constant

    explicit CfObject (CFTypeID typeToUse) : type (typeToUse) {}
    virtual ~CfObject() = default;
    CfObject (const CfObject&) = delete;
    CfObject& operator= (const CfObject&) = delete;

    const CFTypeID type;
    int owners = 1;
};

inline std::recursive_mutex objectLock; ///< the last owner of a device may be another thread
inline std::set<CfObject*> liveObjects; ///< all that there are, but the constants

/** An object for the program, unless the test wants the function to fail; an empty name is of none that can. */
template <typename Object, typename... Arguments>
Object* make (const char* function, Arguments&&... arguments)
{
    const std::scoped_lock guard (objectLock);

    if (*function != '\0' && wqv::FakeMac::get().failureOf (function))
        return nullptr;

    auto* const object = new Object (std::forward<Arguments> (arguments)...);
    liveObjects.insert (object);
    return object;
}

/** Elements that are retained as long as they are in it. */
struct CfCollection : CfObject
{
    using CfObject::CfObject;

    ~CfCollection() override
    {
        for (const auto* const value : values)
            CFRelease (value);
    }

    void add (CFTypeRef value) { values.push_back (CFRetain (value)); }

    std::vector<CFTypeRef> values;
};

struct CfString final : CfObject
{
    explicit CfString (std::string textToUse) : CfObject (stringType), text (std::move (textToUse)) {}
    const std::string text;
};

struct CfNumber final : CfObject
{
    explicit CfNumber (std::int32_t valueToUse) : CfObject (numberType), value (valueToUse) {}
    const std::int32_t value;
};

struct CfArray final : CfCollection
{
    CfArray() : CfCollection (arrayType) {}
};

struct CfSet final : CfCollection
{
    CfSet() : CfCollection (setType) {}
};

/** Keys and values in turn. */
struct CfDictionary final : CfCollection
{
    CfDictionary() : CfCollection (dictionaryType) {}
};

struct CfRunLoop final : CfObject
{
    CfRunLoop() : CfObject (runLoopType) {}
};

template <typename Function>
struct Callback
{
    Function function = nullptr;
    void* context = nullptr;
};

struct IoHidManager final : CfObject
{
    IoHidManager() : CfObject (managerType) {}
    ~IoHidManager() override { wqv::FakeMac::get().manager = nullptr; }

    bool isOpen = false;
    bool isScheduled = false;
    Callback<IOHIDDeviceCallback> onMatching;
    Callback<IOHIDDeviceCallback> onRemoval;
};

struct IoHidDevice final : CfObject
{
    IoHidDevice (int numberToUse, const wqv::FakeMac::Numbers& properties) : CfObject (deviceType), number (numberToUse)
    {
        for (const auto& [name, value] : properties)
            numbers[name] = make<CfNumber> ("", value);
    }

    ~IoHidDevice() override
    {
        for (const auto& [name, value] : numbers)
            CFRelease (value);
    }

    const int number;
    std::map<std::string, CfNumber*> numbers;
    bool isScheduled = false;
    std::uint8_t* buffer = nullptr;
    CFIndex bufferSize = 0;
    Callback<IOHIDCallback> onRemoval;
    Callback<IOHIDReportCallback> onReport;
};
