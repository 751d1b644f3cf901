// SPDX-License-Identifier: GPL-3.0-or-later
// One open hidraw node.

#pragma once

#include "HidService.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <span>

namespace wqv
{

/** Reads input reports on the message loop, writes output reports on any thread, closes the node with its last owner. */
class HidrawConnection final : public HidConnection, public std::enable_shared_from_this<HidrawConnection>
{
public:
    /** @param descriptor  of the open node; taken over */
    explicit HidrawConnection (int descriptor);
    ~HidrawConnection() override;

    /** Starts reading. Message thread.
        @param reportBuffer    receives each report before onReport is called with its length
        @param onReport        called for every report
        @param onHangUp        called once, when the device has gone; input has stopped then */
    void startInput (ReportBuffer& reportBuffer,
                     std::function<void (std::size_t)> onReport,
                     std::function<void()> onHangUp);

    void stopInput() override;
    void readPending() override;
    [[nodiscard]] bool send (std::span<const std::uint8_t> report) override;

private:
    const int descriptor;
    ReportBuffer* buffer = nullptr; ///< null while input is stopped
    std::function<void (std::size_t)> reportCallback;
    std::function<void()> hangUpCallback;
};

} // namespace wqv
