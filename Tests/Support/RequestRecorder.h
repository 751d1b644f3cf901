// SPDX-License-Identifier: GPL-3.0-or-later
// A HID service that passes everything on and keeps what is sent.

#pragma once

#include "HidService.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace wqv
{

/** Stands between the program and another service. Any thread may ask what was sent. */
class RequestRecorder final : public HidService
{
public:
    explicit RequestRecorder (HidService& serviceToUse) : service (serviceToUse) {}

    /** The first byte of each request so far. */
    [[nodiscard]] std::vector<int> codes() const
    {
        const std::scoped_lock guard (lock);
        return sent;
    }

    [[nodiscard]] std::vector<HidDevice> devices() override { return service.devices(); }
    void setListener (Listener* newListener) override { service.setListener (newListener); }

    [[nodiscard]] Opened open (HidDeviceId device, ReportBuffer& buffer) override
    {
        auto [result, connection] = service.open (device, buffer);
        return { .result = result, .connection = std::make_shared<Connection> (*this, std::move (connection)) };
    }

private:
    struct Connection final : HidConnection
    {
        Connection (RequestRecorder& recorderToUse, std::shared_ptr<HidConnection> connectionToUse)
            : recorder (recorderToUse), connection (std::move (connectionToUse))
        {
        }

        void stopInput() override { connection->stopInput(); }

        bool send (std::span<const std::uint8_t> report) override
        {
            {
                const std::scoped_lock guard (recorder.lock);
                recorder.sent.push_back (report.front());
            }

            return connection->send (report);
        }

        RequestRecorder& recorder;
        std::shared_ptr<HidConnection> connection;
    };

    HidService& service;
    mutable std::mutex lock; ///< guards what was sent
    std::vector<int> sent;
};

} // namespace wqv
