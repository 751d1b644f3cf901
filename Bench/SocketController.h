// SPDX-License-Identifier: GPL-3.0-or-later
// The device's end of a socket pair that stands in for a hidraw node, with a stop watch.

#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <span>
#include <thread>
#include <vector>

namespace wqv
{

/** Answers requests on a thread of its own, and measures how long the host takes: from the moment an answer can be read
    to the moment the next request is there. The pair keeps the boundaries of reports, as a hidraw node does. */
class SocketController
{
public:
    /** What to answer to a request, without its report id; empty for nothing. Called on the controller's thread. */
    using Answering = std::function<std::span<const std::uint8_t> (std::span<const std::uint8_t> request)>;

    /** @param codeToTime  requests that begin with this byte are timed, from the second one on */
    SocketController (std::uint8_t codeToTime, Answering answeringToUse);
    ~SocketController();

    SocketController (const SocketController&) = delete;
    SocketController& operator= (const SocketController&) = delete;

    /** Gives the host's end away; the caller closes it, and the controller ends then. Once. */
    [[nodiscard]] int takeHostEnd();

    /** Waits until the host's end is closed. The host's times in nanoseconds, sorted. */
    [[nodiscard]] std::vector<std::chrono::nanoseconds> takeTimes();

    /** Allocations of the host between the first and the last request that is timed; after takeTimes(). */
    [[nodiscard]] std::uint64_t allocationsMeanwhile() const { return lastAllocations - firstAllocations; }

private:
    void run();

    std::uint8_t timedCode;
    Answering answering;
    std::array<int, 2> ends { -1, -1 }; ///< the device's, the host's
    std::vector<std::chrono::nanoseconds> times;
    std::uint64_t firstAllocations = 0;
    std::uint64_t lastAllocations = 0;
    std::thread thread;
};

} // namespace wqv
