// SPDX-License-Identifier: GPL-3.0-or-later
// A HID service that passes everything on and keeps what is sent.

#pragma once

#include "HidService.h"

#include <chrono>
#include <condition_variable>
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

    /** Waits for a first request without the message loop; false if there is none for 20 s. */
    [[nodiscard]] bool waitForFirst()
    {
        std::unique_lock guard (lock);
        return arrived.wait_for (guard, std::chrono::seconds (20), [this] { return ! sent.empty(); });
    }

    [[nodiscard]] int timesOpened() const { return opens; }

    [[nodiscard]] std::vector<HidDevice> devices() override { return service.devices(); }
    void setListener (Listener* newListener) override { service.setListener (newListener); }

    [[nodiscard]] Opened open (HidDeviceId device, ReportBuffer& buffer) override
    {
        ++opens;
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
                recorder.arrived.notify_all();
            }

            return connection->send (report);
        }

        RequestRecorder& recorder;
        std::shared_ptr<HidConnection> connection;
    };

    HidService& service;
    int opens = 0;
    mutable std::mutex lock; ///< guards what was sent
    std::condition_variable arrived;
    std::vector<int> sent;
};

} // namespace wqv
