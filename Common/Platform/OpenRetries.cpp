// SPDX-License-Identifier: GPL-3.0-or-later
// The number of attempts to open a device, and the time between them.

#include "OpenRetries.h"

#include <utility>
#include <vector>

namespace wqv
{
namespace
{

constexpr int millisecondsBetweenAttempts = 100;
constexpr int attemptsInAll = 20;

} // namespace

OpenRetries::OpenRetries (std::function<void (HidDeviceId)> tryAgain, std::function<void (HidDeviceId)> giveUp)
    : tryAgainCallback (std::move (tryAgain)), giveUpCallback (std::move (giveUp))
{
}

OpenRetries::~OpenRetries()
{
    stopTimer();
}

void OpenRetries::begin (HidDeviceId device)
{
    attempts[device] = { .left = attemptsInAll };
}

void OpenRetries::failed (HidDeviceId device)
{
    if (const auto found = attempts.find (device); found != attempts.end())
    {
        found->second.isDue = true;
        startTimer (millisecondsBetweenAttempts);
    }
}

void OpenRetries::end (HidDeviceId device)
{
    attempts.erase (device);
}

void OpenRetries::timerCallback()
{
    stopTimer();

    std::vector<HidDeviceId> again;
    std::vector<HidDeviceId> never;

    for (auto& [device, of] : attempts)
        if (std::exchange (of.isDue, false))
            (--of.left > 0 ? again : never).push_back (device);

    for (const auto device : never)
    {
        end (device);
        giveUpCallback (device);
    }

    for (const auto device : again)
        tryAgainCallback (device);
}

} // namespace wqv
