// SPDX-License-Identifier: GPL-3.0-or-later
// The made-up Mac behind the stand-ins for Core Foundation and IOKit: what it has, and what was done to it.

#pragma once

#include <IOKit/hid/IOHIDLib.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace wqv
{

/** One at a time, and the stand-ins work on it. Its callbacks come in turn(), on the thread that calls it.

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
        @returns a number for the operations below, never used twice */
    int plugIn (Numbers properties);

    /** Detaches a device: its own callback comes before the manager's, and until then a list of devices still has it. */
    void unplug (int number);

    /** Has a device send an input report.
        @param length  as it is told, if it is not that of the report */
    void send (int number, std::vector<std::uint8_t> report, std::optional<CFIndex> length = {});

    /** Calls back for all that has happened; a callback that is no longer registered, or scheduled, is not called. */
    void turn();

    /** How many more calls of a function, by its name, fail, and with what. */
    std::map<std::string, std::pair<int, IOReturn>> failures;

    std::vector<std::vector<std::uint8_t>> written; ///< output reports with id 0
    std::vector<Numbers> matching;                  ///< what the manager was told last to match
    bool matchesAll = false;                        ///< it was told to match all, without a list

    /** The preference AppleLanguages: none, a text instead of a list, or a list, in which an element without a text is a number. */
    std::optional<std::vector<std::optional<std::string>>> languages;
    bool languagesAreAText = false;

    std::map<std::uint32_t, std::string> assertions; ///< about power, that are held: type and name

    // For the stand-ins.
    [[nodiscard]] std::optional<IOReturn> failureOf (const std::string& function);
    void tellOfAttached (IoHidDevice* device);
    [[nodiscard]] bool isAttached (const IoHidDevice* device) const;
    std::map<int, IoHidDevice*> attached;
    std::set<IoHidDevice*> leaving; ///< detached, but still listed
    IoHidManager* manager = nullptr;
    std::deque<std::function<void()>> pending;
    [[nodiscard]] CfRunLoop* currentRunLoop() const { return runLoop; }
    int opened = 0;    ///< opened, and not closed yet
    int scheduled = 0; ///< scheduled, and not unscheduled yet

private:
    int lastDevice = 0;
    CfRunLoop* const runLoop;
};

} // namespace wqv
