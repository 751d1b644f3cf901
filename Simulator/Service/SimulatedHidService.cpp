// SPDX-License-Identifier: GPL-3.0-or-later
// How reports, plugs and unplugs of virtual controllers reach the program.

#include "SimulatedHidService.h"

#include "DeviceIds.h"
#include "Requests.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace wqv
{

class SimulatedHidService::Connection final : public HidConnection
{
public:
    Connection (SimulatedHidService& serviceToUse, HidDeviceId deviceToUse)
        : service (serviceToUse), device (deviceToUse)
    {
    }

    void stopInput() override
    {
        const std::scoped_lock guard (service.lock);

        if (const auto slot = service.slots.find (device); slot != service.slots.end())
            slot->second.buffer = nullptr;
    }

    bool send (std::span<const std::uint8_t> report) override { return service.send (device, report); }

private:
    SimulatedHidService& service;
    HidDeviceId device;
};

SimulatedHidService::~SimulatedHidService()
{
    stopTimer();
    cancelPendingUpdate();
}

HidDeviceId SimulatedHidService::plugIn (SimulatedController* controller)
{
    return plugIn ({ .vendorId = kVendorId,
                     .productId = HidDeviceType[1],
                     .versionNumber = 0x0100,
                     .location = 1,
                     .inputReportLength = requestSize,
                     .outputReportLength = requestSize },
                   controller);
}

HidDeviceId SimulatedHidService::plugIn (HidDevice device, SimulatedController* controller)
{
    device.id = ++lastId;

    {
        const std::scoped_lock guard (lock);

        if (controller != nullptr)
            device.versionNumber = controller->versionNumber();

        slots[device.id] = { .device = device, .controller = controller };
    }

    if (listener != nullptr)
        listener->deviceAttached (device);

    return device.id;
}

void SimulatedHidService::unplug (HidDeviceId device)
{
    {
        const std::scoped_lock guard (lock);
        slots.erase (device);
        unplugged.notify_all();
    }

    if (listener != nullptr)
        listener->deviceRemoved (device);
}

void SimulatedHidService::deliver (HidDeviceId device, std::span<const std::uint8_t> report)
{
    {
        const std::scoped_lock guard (lock);
        const auto slot = slots.find (device);

        if (slot == slots.end() || slot->second.buffer == nullptr)
            return;

        std::copy_n (report.begin(), std::min (report.size(), reportBufferSize), slot->second.buffer->begin());
    }

    if (listener != nullptr)
        listener->reportReceived (device, report.size());
}

std::vector<HidDevice> SimulatedHidService::devices()
{
    const std::scoped_lock guard (lock);
    std::vector<HidDevice> list;
    list.reserve (slots.size());

    for (const auto& [id, slot] : slots)
        list.push_back (slot.device);

    return list;
}

void SimulatedHidService::setListener (Listener* newListener)
{
    listener = newListener;
}

HidService::Opened SimulatedHidService::open (HidDeviceId device, ReportBuffer& buffer)
{
    const std::scoped_lock guard (lock);
    const auto slot = slots.find (device);

    if (slot == slots.end())
        return { .result = OpenResult::gone, .connection = nullptr };

    slot->second.buffer = &buffer;
    return { .result = OpenResult::ok, .connection = std::make_shared<Connection> (*this, device) };
}

bool SimulatedHidService::send (HidDeviceId device, std::span<const std::uint8_t> report)
{
    std::unique_lock guard (lock);
    const auto slot = slots.find (device);

    if (slot == slots.end() || slot->second.controller == nullptr)
        return false;

    const auto reaction = slot->second.controller->receive (report);
    const auto now = Clock::now();

    for (const auto& event : reaction.events)
        events.emplace (now + event.delay,
                        PendingEvent { .device = device,
                                       .description = slot->second.device,
                                       .controller = slot->second.controller,
                                       .event = event });

    triggerAsyncUpdate();

    if (! reaction.isTaken)
        unplugged.wait_for (guard, reaction.writeLimit, [&] { return ! slots.contains (device); });

    return reaction.isTaken;
}

/** Plays what is due. Of the rest, the first sets the timer. */
void SimulatedHidService::playEvents()
{
    stopTimer();

    for (;;)
    {
        std::optional<PendingEvent> due;

        {
            const std::scoped_lock guard (lock);

            if (events.empty())
                return;

            const auto first = events.begin();
            const auto remaining = std::chrono::ceil<std::chrono::milliseconds> (first->first - Clock::now());

            if (remaining.count() > 0)
            {
                startTimer (static_cast<int> (remaining.count()));
                return;
            }

            due = std::move (first->second);
            events.erase (first);

            // A report of a controller that has gone is lost with it.
            if (due->event.kind != SimulatedController::Event::Kind::plugIn && ! slots.contains (due->device))
                continue;

            due->controller->happens (due->event);
        }

        happen (*due);
    }
}

void SimulatedHidService::happen (const PendingEvent& pending)
{
    switch (pending.event.kind)
    {
        case SimulatedController::Event::Kind::report: deliver (pending.device, pending.event.report); break;
        case SimulatedController::Event::Kind::unplug: unplug (pending.device); break;
        case SimulatedController::Event::Kind::plugIn: plugIn (pending.description, pending.controller); break;
    }
}

} // namespace wqv
