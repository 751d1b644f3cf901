// SPDX-License-Identifier: GPL-3.0-or-later
// A HID service that is nothing but a list of devices and a note of what was asked of it.

#pragma once

#include "HidService.h"

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace wqv
{

/** Unlike a system it does as the test says: a device may be told of as gone that is still listed, or the other way
    round. */
class FakeHidService final : public HidService
{
public:
    /** The controller that the program seeks, as the system may show it. The ids are those that the build was told. */
    [[nodiscard]] static HidDevice controller (HidDeviceId id, std::uint64_t location = 1)
    {
        return { .id = id,
                 .vendorId = WQV_USB_VENDOR_ID,
                 .productId = WQV_USB_PRODUCT_ID,
                 .versionNumber = 0x0105,
                 .location = location,
                 .inputReportLength = 64,
                 .outputReportLength = 128 };
    }

    /** Lists a device and tells of it. */
    void plugIn (const HidDevice& device)
    {
        listed.push_back (device);

        if (listener != nullptr)
            listener->deviceAttached (device);
    }

    void unplug (HidDeviceId id)
    {
        std::erase_if (listed, [id] (const auto& device) { return device.id == id; });
        listener->deviceRemoved (id);
    }

    /** Sends a report of the device that is open. */
    void deliver (std::vector<std::uint8_t> report)
    {
        report.resize (std::min (report.size(), reportBuffer->size()));
        std::ranges::copy (report, reportBuffer->begin());
        listener->reportReceived (opened.back(), report.size());
    }

    [[nodiscard]] std::vector<HidDevice> devices() override
    {
        ++listings;
        return listed;
    }

    void setListener (Listener* newListener) override { listener = newListener; }

    [[nodiscard]] Opened open (HidDeviceId device, ReportBuffer& buffer) override
    {
        opened.push_back (device);
        onOpen();
        reportBuffer = &buffer;

        if (const auto refused = refusals.find (device); refused != refusals.end())
            return { .result = refused->second, .connection = nullptr };

        return { .result = OpenResult::ok, .connection = std::make_shared<Connection> (*this, device) };
    }

    std::vector<HidDevice> listed;
    int listings = 0;                           ///< how often devices() was asked
    std::map<HidDeviceId, OpenResult> refusals; ///< what open() answers for these
    std::function<void()> onOpen = [] {};
    std::function<void (HidDeviceId)> onSend = [] (auto) {}; ///< called where a connection writes

    Listener* listener = nullptr;
    ReportBuffer* reportBuffer = nullptr;
    std::vector<HidDeviceId> opened; ///< in order
    std::vector<HidDeviceId> closed; ///< by whichever thread held the last share

private:
    class Connection final : public HidConnection
    {
    public:
        Connection (FakeHidService& serviceToUse, HidDeviceId deviceToUse)
            : service (serviceToUse), device (deviceToUse)
        {
        }

        ~Connection() override
        {
            const std::scoped_lock guard (service.closing);
            service.closed.push_back (device);
        }

        void stopInput() override { service.reportBuffer = nullptr; }

        bool send (std::span<const std::uint8_t>) override
        {
            service.onSend (device);
            return true;
        }

    private:
        FakeHidService& service;
        HidDeviceId device;
    };

    std::mutex closing;
};

} // namespace wqv
