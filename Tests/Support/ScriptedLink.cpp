// SPDX-License-Identifier: GPL-3.0-or-later
// Playing the controller's events on a clock that only goes when it is waited for.

#include "ScriptedLink.h"

#include <algorithm>
#include <utility>

namespace wqv
{

bool ScriptedLink::send (const Request& request)
{
    requests.push_back (request);

    auto reaction = isPluggedIn ? controller.receive (request) : VirtualController::Reaction { .isTaken = false };

    for (auto& event : reaction.events)
        schedule (std::move (event));

    takeStep();
    return reaction.isTaken;
}

Answer ScriptedLink::wait (Milliseconds limit)
{
    takeStep();
    const auto end = now + limit;

    if (! isStopped)
        playUntil (end);

    auto answer = mailbox.wait (Milliseconds {}, [this] { mailbox.turned(); });
    answer.remaining = end - now;
    waits.push_back ({ .requests = requests.size(), .limit = limit, .answer = answer });
    takeStep();
    return answer;
}

void ScriptedLink::pause (Milliseconds duration)
{
    takeStep();

    // What comes meanwhile is found by the next wait.
    pauses.push_back (duration);
    now += duration;
}

std::string ScriptedLink::codes() const
{
    std::string digits;

    for (const auto& request : requests)
        digits += static_cast<char> ('0' + request.front() % 16);

    return digits;
}

/** Lets happen what is overdue; if that is nothing, goes on to the first instant at which something happens. */
void ScriptedLink::playUntil (Milliseconds end)
{
    while (! events.empty() && events.begin()->first <= end)
    {
        const auto [time, event] = *events.begin();
        events.erase (events.begin());
        now = end = std::max (now, time);
        play (event);
    }

    now = end;
}

void ScriptedLink::play (const VirtualController::Event& event)
{
    using Kind = VirtualController::Event::Kind;
    controller.happens (event);

    if (event.kind == Kind::report)
    {
        mailbox.store (event.report, true);
        return;
    }

    isPluggedIn = event.kind == Kind::plugIn;
    mailbox.interrupt();

    // What was under way is lost.
    std::erase_if (events, [] (const auto& entry) { return entry.second.kind == Kind::report; });
}

void ScriptedLink::takeStep()
{
    if (steps++ != stopAt)
        return;

    isStopped = true;
    requestsAtStop = requests.size();
    mailbox.stop();
}

} // namespace wqv
