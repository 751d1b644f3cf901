// SPDX-License-Identifier: GPL-3.0-or-later
// The number of attempts to open a device, and the time between them.

#include "OpenRetries.h"

#include <juce_events/juce_events.h>

#include <utility>
#include <vector>

namespace wqv
{
namespace
{

constexpr int millisecondsBetweenAttempts = 100;
constexpr int attemptsInAll = 20;

} // namespace

/** JUCE's timer, which the header does not show: it is used where there is no JUCE in reach. */
class OpenRetries::Timer final : public juce::Timer
{
public:
    explicit Timer (OpenRetries& ownerToUse) : owner (ownerToUse) {}

private:
    void timerCallback() override { owner.tryWhatIsDue(); }

    OpenRetries& owner;
};

OpenRetries::OpenRetries (std::function<void (HidDeviceId)> tryAgain, std::function<void (HidDeviceId)> giveUp)
    : tryAgainCallback (std::move (tryAgain)),
      giveUpCallback (std::move (giveUp)),
      timer (std::make_unique<Timer> (*this))
{
}

OpenRetries::~OpenRetries() = default;

void OpenRetries::begin (HidDeviceId device)
{
    attempts[device] = { .left = attemptsInAll };
}

void OpenRetries::failed (HidDeviceId device)
{
    if (const auto found = attempts.find (device); found != attempts.end())
    {
        found->second.isDue = true;
        timer->startTimer (millisecondsBetweenAttempts);
    }
}

void OpenRetries::end (HidDeviceId device)
{
    attempts.erase (device);
}

void OpenRetries::tryWhatIsDue()
{
    timer->stopTimer();

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
