// SPDX-License-Identifier: GPL-3.0-or-later
// The made-up Mac behind the stand-ins for Core Foundation, IOKit and libdispatch: what it has, and what was done to it.

#pragma once

#include <IOKit/hid/IOHIDLib.h>
#include <dispatch/dispatch.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
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

    dispatch_function_t handler = nullptr; ///< of a source of signals, as what follows
    void* context = nullptr;
    bool isActive = false;

    int owners = 1;
};

/** The object that a reference points to; if it is gone, the test fails. */
CfObject& objectAt (CFTypeRef reference);

namespace wqv
{

/** One at a time, and the stand-ins work on it. Its callbacks come in turn(). One thread.

    At its end every object must have been released, exactly once, and what was opened or scheduled must not be so any more: else the
    test fails. */
class FakeMac
{
public:
    using Numbers = std::map<std::string, std::int32_t>;

    FakeMac();
    ~FakeMac();

    FakeMac (const FakeMac&) = delete;
    FakeMac& operator= (const FakeMac&) = delete;

    [[nodiscard]] static FakeMac& get();

    /** Attaches a device.
        @param properties  as IOKit names them; of "bInterfaceNumber" the device itself knows nothing
        @returns its index in devices */
    int plugIn (const Numbers& properties);

    /** Detaches a device: its own callback comes before the manager's, and until then a list of devices still has it. */
    void unplug (int number);

    /** Has a device send an input report.
        @param length  as it is told, if it is not that of the report */
    void send (int number, std::vector<std::uint8_t> report, std::optional<CFIndex> length = {});

    /** Calls back for all that has happened; a callback that is no longer registered, or scheduled, is not called. */
    void turn();

    /** @returns whether a source heard of the signal */
    bool raise (int signal);

    /** How many more calls of a function, by its name, fail, and with what. */
    std::map<std::string, std::pair<int, IOReturn>> failures;

    std::vector<std::vector<std::uint8_t>> written; ///< output reports with id 0
    std::vector<Numbers> matching;                  ///< what the manager was told last to match
    bool matchesAll = false;                        ///< it was told to match all, without a list
    int opened = 0;                                 ///< devices that are not closed yet

    /** The preference AppleLanguages, if there is one: a list, in which an element without a text is a number, or a text instead. */
    std::optional<std::vector<std::optional<std::string>>> languages;
    bool languagesAreAText = false;

    std::map<std::uint32_t, std::string> assertions; ///< about power, that are held: type and name

    // For the stand-ins.

    /** Does nothing while none is registered. */
    template <typename Function>
    struct Callback
    {
        template <typename... Arguments>
        void operator() (Arguments... arguments) const
        {
            if (function != nullptr)
                function (context, kIOReturnSuccess, arguments...);
        }

        Function function = nullptr;
        void* context = nullptr;
    };

    struct Manager
    {
        const CfObject* object = nullptr;
        bool isOpen = false;
        bool isScheduled = false;
        Callback<IOHIDDeviceCallback> onMatching {};
        Callback<IOHIDDeviceCallback> onRemoval {};
    };

    struct Device
    {
        IOHIDDeviceRef reference = nullptr;
        bool isAttached = true;
        bool isListed = true;
        bool isScheduled = false;
        std::uint8_t* buffer = nullptr;
        CFIndex bufferSize = 0;
        Callback<IOHIDCallback> onRemoval {};
        Callback<IOHIDReportCallback> onReport {};
    };

    [[nodiscard]] std::optional<IOReturn> failureOf (const std::string& function);
    void tellOfAttached (Device& device);

    std::deque<CfObject> objects;
    std::deque<Device> devices; ///< those that are gone too
    Manager manager;
    CFRunLoopRef runLoop = nullptr;

private:
    std::deque<std::function<void()>> pending;
};

} // namespace wqv

/** A new object for its one owner. */
template <typename Reference>
Reference make (CfObject object)
{
    return reinterpret_cast<Reference> (&wqv::FakeMac::get().objects.emplace_back (std::move (object)));
}
