// SPDX-License-Identifier: GPL-3.0-or-later
// A HID service that passes everything on to another one and writes it into a trace.

#pragma once

#include "HidService.h"
#include "Trace.h"

#include <map>
#include <set>

namespace wqv
{

/** Stands between a program and any HID service. Message thread, but the connections' send. */
class TracedHidService final : public HidService, private HidService::Listener
{
public:
    /** @param serviceToUse, traceToUse  outlive this object and the connections that it opens */
    TracedHidService (HidService& serviceToUse, TraceWriter& traceToUse);
    ~TracedHidService() override;

    [[nodiscard]] std::vector<HidDevice> devices() override;
    void setListener (HidService::Listener* newListener) override;
    [[nodiscard]] Opened open (HidDeviceId device, ReportBuffer& buffer) override;

private:
    class Connection;

    void deviceAttached (const HidDevice& device) override;
    void deviceRemoved (HidDeviceId device) override;
    void reportReceived (HidDeviceId device, std::size_t length) override;
    void noteAttached (const HidDevice& device);

    HidService& service;
    TraceWriter& trace;
    HidService::Listener* listener = nullptr;
    std::set<HidDeviceId> known;                        ///< those that the trace has
    std::map<HidDeviceId, const ReportBuffer*> buffers; ///< of each device, as it was opened last
};

} // namespace wqv
