// SPDX-License-Identifier: GPL-3.0-or-later
// Answering the requests of an update, and measuring the time until each.

#include "SocketController.h"

#include "Allocations.h"

#include <algorithm>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace wqv
{

SocketController::SocketController (std::uint8_t codeToTime, Answering answeringToUse)
    : timedCode (codeToTime), answering (std::move (answeringToUse))
{
    if (socketpair (AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        throw std::runtime_error ("no socket pair");

    thread = std::thread ([this] { run(); });
}

SocketController::~SocketController()
{
    if (ends[1] >= 0)
        close (ends[1]);

    if (thread.joinable())
        thread.join();

    close (ends[0]);
}

int SocketController::takeHostEnd()
{
    return std::exchange (ends[1], -1);
}

std::vector<std::chrono::nanoseconds> SocketController::takeTimes()
{
    thread.join();
    std::ranges::sort (times);
    return std::move (times);
}

void SocketController::run()
{
    using Clock = std::chrono::steady_clock;

    leaveOutAllocationsOfThisThread();

    std::array<std::uint8_t, 256> request {};
    auto isTiming = false;
    Clock::time_point answeredAt;

    for (;;)
    {
        const auto length = read (ends[0], request.data(), request.size());
        const auto now = Clock::now();

        if (length <= 1)
            return;

        const auto report = std::span<const std::uint8_t> (request).subspan (1, static_cast<std::size_t> (length) - 1);

        if (report[0] != timedCode)
        {
            isTiming = false;
        }
        else
        {
            lastAllocations = allocationCount();

            if (std::exchange (isTiming, true))
                times.push_back (now - answeredAt);
            else if (firstAllocations == 0)
                firstAllocations = lastAllocations;
        }

        const auto answer = answering (report);
        answeredAt = Clock::now();

        if (! answer.empty() && write (ends[0], answer.data(), answer.size()) < 0)
            return;
    }
}

} // namespace wqv
