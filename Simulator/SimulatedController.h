// SPDX-License-Identifier: GPL-3.0-or-later
// What the simulated HID service asks of a controller: what it does after a request.

#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace wqv
{

/** A controller without clock and thread: requests go in, and what it does about them comes out, with delays. The caller
    sees to it that one thread at a time uses an object. */
class SimulatedController
{
public:
    /** What the controller does after a request. */
    struct Event
    {
        enum class Kind
        {
            report,
            unplug,
            plugIn
        };

        Kind kind = Kind::report;
        std::chrono::milliseconds delay {}; ///< after the request
        std::vector<std::uint8_t> report {};
        bool isFinalAnswer = false;      ///< nothing more is owed for the request
        bool startsInUpdateMode = false; ///< of plugIn
        std::int32_t version = 0;        ///< of plugIn, in BCD: the firmware that it comes with; 0: the same as before
    };

    struct Reaction
    {
        bool isTaken = true;   ///< false: the host's system gives the report up
        bool takesMore = true; ///< false: nor does the controller take others until it is plugged in again

        /** After this time the system gives a report up that is not taken; at once when the controller goes away. */
        std::chrono::milliseconds writeLimit { 5000 };

        std::vector<Event> events {};
    };

    SimulatedController() = default;
    SimulatedController (const SimulatedController&) = delete;
    SimulatedController& operator= (const SimulatedController&) = delete;
    virtual ~SimulatedController() = default;

    /** Hears of each step, as a line of text for people; called inside the operations below. */
    void setLog (std::function<void (const std::string&)> logToUse) { log = std::move (logToUse); }

    /** Takes one output report. */
    [[nodiscard]] virtual Reaction receive (std::span<const std::uint8_t> report) = 0;

    /** Tells that an event is about to reach the host: call it right before. */
    virtual void happens (const Event& event) = 0;

    /** The firmware version, in BCD as in a device descriptor. */
    [[nodiscard]] virtual std::int32_t versionNumber() const = 0;

protected:
    void note (const std::string& line) const
    {
        if (log)
            log (line);
    }

private:
    std::function<void (const std::string&)> log;
};

} // namespace wqv
