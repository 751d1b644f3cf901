// SPDX-License-Identifier: GPL-3.0-or-later
// Finds in a trace what the controller did after each request.

#include "TracedController.h"

#include <algorithm>
#include <utility>

namespace wqv
{

using Line = TraceLine::Kind;

TracedController::TracedController (std::vector<TraceLine> traceToPlay) : trace (std::move (traceToPlay))
{
    const auto first = std::ranges::find_if (
        trace, [this] (const auto& line) { return line.kind == Line::attached && isOpened (line.device.id); });

    if (first != trace.end())
        version = first->device.versionNumber;
}

TracedController::Reaction TracedController::receive (std::span<const std::uint8_t> report)
{
    while (position < trace.size() && trace[position].kind != Line::sent)
        ++position;

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

        // What happens to other devices is none of the controller's business.
        if (line.kind == Line::notTaken)
            reaction.isTaken = false;
        else if (line.kind == Line::received)
            reaction.events.push_back ({ .delay = delay, .report = line.bytes });
        else if (line.kind == Line::removed && isOpened (line.device.id))
            reaction.events.push_back ({ .kind = Event::Kind::unplug, .delay = delay });
        else if (line.kind == Line::attached && isOpened (line.device.id))
            reaction.events.push_back ({ .kind = Event::Kind::plugIn, .delay = delay });
    }

    return reaction;
}

/** Whether the updater took a device for the controller. */
bool TracedController::isOpened (HidDeviceId device) const
{
    return std::ranges::any_of (trace,
                                [device] (const auto& line) {
                                    return line.kind == Line::opened && line.device.id == device
                                           && line.result == HidService::OpenResult::ok;
                                });
}

} // namespace wqv
