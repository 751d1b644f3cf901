// SPDX-License-Identifier: GPL-3.0-or-later
// What the simulated HID service asks of a controller: what it does after a request.

#pragma once

#include <chrono>
#include <cstdint>
#include <span>
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
    };

    struct Reaction
    {
        bool isTaken = true; ///< false: the controller takes no reports now
        std::vector<Event> events {};
    };

    SimulatedController() = default;
    SimulatedController (const SimulatedController&) = delete;
    SimulatedController& operator= (const SimulatedController&) = delete;
    virtual ~SimulatedController() = default;

    /** Takes one output report. */
    [[nodiscard]] virtual Reaction receive (std::span<const std::uint8_t> report) = 0;

    /** Tells that an event is about to reach the host: call it right before. */
    virtual void happens (const Event& event) = 0;

    /** The firmware version, in BCD as in a device descriptor. */
    [[nodiscard]] virtual std::int32_t versionNumber() const = 0;
};

} // namespace wqv
