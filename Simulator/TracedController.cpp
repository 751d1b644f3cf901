// SPDX-License-Identifier: GPL-3.0-or-later
// Finds in a trace what the controller did after each request.

#include "TracedController.h"

#include "FirmwareVersion.h"

#include <algorithm>
#include <utility>

namespace wqv
{

using Line = TraceLine::Kind;

TracedController::TracedController (std::vector<TraceLine> traceToPlay) : trace (std::move (traceToPlay))
{
    for (; position < trace.size() && trace[position].kind != Line::sent; ++position)
        if (const auto event = play (trace[position]))
            happens (*event);
}

TracedController::Reaction TracedController::receive (std::span<const std::uint8_t> report)
{
    ++requests;

    if (differentRequest == 0 && (position == trace.size() || ! std::ranges::equal (report, trace[position].bytes)))
        differentRequest = requests;

    if (position == trace.size())
        return {};

    const auto begin = trace[position++].time;
    Reaction reaction;

    for (; position < trace.size() && trace[position].kind != Line::sent; ++position)
    {
        const auto& line = trace[position];
        const auto delay = std::chrono::floor<std::chrono::milliseconds> (line.time - begin);

        if (line.kind == Line::notTaken)
        {
            reaction.isTaken = false;
            reaction.writeLimit = delay;
        }
        else if (auto event = play (line))
        {
            const auto isBack = ! reaction.events.empty() && reaction.events.back().kind == Event::Kind::plugIn;
            event->delay = delay;

            // Who has come back is another device for the host, and says nothing before the next request. If it left
            // again by then, it stays away all the time.
            if (! isBack)
                reaction.events.push_back (std::move (*event));
            else if (event->kind == Event::Kind::unplug)
                reaction.events.pop_back();
        }
    }

    return reaction;
}

void TracedController::happens (const Event& event)
{
    if (event.kind == Event::Kind::report)
        return;

    if (event.version != 0)
        version = event.version;

    note (event.kind == Event::Kind::unplug
              ? "controller unplugged"
              : "controller plugged in, firmware version " + firmwareVersionText (version));
}

std::string TracedController::firstDifference() const
{
    return differentRequest == 0 ? "" : "request " + std::to_string (differentRequest) + " is not the recorded one";
}

/** What a line means for the host, if anything. What other devices do is none of the controller's business: it is the
    device that the updater opened last, and once that has gone, the one that it opens next. */
std::optional<TracedController::Event> TracedController::play (const TraceLine& line)
{
    const auto id = line.device.id;

    if (line.kind == Line::received)
        return Event { .report = line.bytes };

    if (line.kind == Line::opened && line.result == HidService::OpenResult::ok)
        held = id;

    if (line.kind == Line::removed && id == held)
    {
        held = 0;
        return Event { .kind = Event::Kind::unplug };
    }

    if (line.kind == Line::attached && held == 0 && isOpenedNext (id))
    {
        held = id;
        return Event { .kind = Event::Kind::plugIn, .version = line.device.versionNumber };
    }

    return {};
}

/** Whether the next device that the updater takes is this one. */
bool TracedController::isOpenedNext (HidDeviceId device) const
{
    const auto next = std::find_if (trace.begin() + static_cast<std::ptrdiff_t> (position),
                                    trace.end(),
                                    [] (const auto& line)
                                    { return line.kind == Line::opened && line.result == HidService::OpenResult::ok; });
    return next != trace.end() && next->device.id == device;
}

} // namespace wqv
