// SPDX-License-Identifier: GPL-3.0-or-later
// Writes a line for each device, opening and report that passes.

#include "TracedHidService.h"

#include <algorithm>
#include <utility>

namespace wqv
{

using Kind = TraceLine::Kind;

class TracedHidService::Connection final : public HidConnection
{
public:
    Connection (TraceWriter& traceToUse, std::shared_ptr<HidConnection> connectionToUse)
        : trace (traceToUse), connection (std::move (connectionToUse))
    {
    }

    void stopInput() override { connection->stopInput(); }
    void readPending() override { connection->readPending(); }

    bool send (std::span<const std::uint8_t> report) override
    {
        // Before it is sent, so that no answer can stand above it.
        trace.write ({ .kind = Kind::sent, .bytes = { report.begin(), report.end() } });
        const auto isTaken = connection->send (report);

        if (! isTaken)
            trace.write ({ .kind = Kind::notTaken });

        return isTaken;
    }

private:
    TraceWriter& trace;
    const std::shared_ptr<HidConnection> connection;
};

TracedHidService::TracedHidService (HidService& serviceToUse, TraceWriter& traceToUse)
    : service (serviceToUse), trace (traceToUse)
{
}

TracedHidService::~TracedHidService()
{
    service.setListener (nullptr);
}

std::vector<HidDevice> TracedHidService::devices()
{
    auto list = service.devices();

    for (const auto& device : list)
        noteAttached (device);

    return list;
}

void TracedHidService::setListener (HidService::Listener* newListener)
{
    listener = newListener;
    service.setListener (newListener != nullptr ? this : nullptr);
}

HidService::Opened TracedHidService::open (HidDeviceId device, ReportBuffer& buffer)
{
    auto [result, connection] = service.open (device, buffer);
    trace.write ({ .kind = Kind::opened, .device = { .id = device }, .result = result });

    if (result != OpenResult::ok)
        return { .result = result, .connection = nullptr };

    buffers[device] = &buffer;
    return { .result = result, .connection = std::make_shared<Connection> (trace, std::move (connection)) };
}

void TracedHidService::deviceAttached (const HidDevice& device)
{
    noteAttached (device);
    listener->deviceAttached (device);
}

void TracedHidService::deviceRemoved (HidDeviceId device)
{
    trace.write ({ .kind = Kind::removed, .device = { .id = device } });
    known.erase (device);
    buffers.erase (device);
    listener->deviceRemoved (device);
}

void TracedHidService::reportReceived (HidDeviceId device, std::size_t length)
{
    if (const auto found = buffers.find (device); found != buffers.end())
    {
        const auto end = found->second->begin() + static_cast<std::ptrdiff_t> (std::min (length, reportBufferSize));
        trace.write ({ .kind = Kind::received, .bytes = { found->second->begin(), end } });
    }

    listener->reportReceived (device, length);
}

/** A device that becomes accessible is told of more than once. */
void TracedHidService::noteAttached (const HidDevice& device)
{
    if (known.insert (device.id).second)
        trace.write ({ .kind = Kind::attached, .device = device });
}

} // namespace wqv
