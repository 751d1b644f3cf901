// SPDX-License-Identifier: GPL-3.0-or-later
// A controller that does again what a trace says that one did.

#pragma once

#include "SimulatedController.h"
#include "Trace.h"

#include <cstddef>
#include <string>
#include <vector>

namespace wqv
{

/** Answers the n-th request as the recorded controller answered its n-th, with the same delays; after the last one it
    is silent. */
class TracedController final : public SimulatedController
{
public:
    explicit TracedController (std::vector<TraceLine> traceToPlay);

    [[nodiscard]] Reaction receive (std::span<const std::uint8_t> report) override;
    void happens (const Event& /*event*/) override {}

    /** As the controller had it that was opened first. */
    [[nodiscard]] std::int32_t versionNumber() const override { return version; }

    /** The first request that was not the recorded one, counted from 1; 0 if there was none. */
    [[nodiscard]] std::size_t firstDifference() const { return differentRequest; }

private:
    [[nodiscard]] bool isOpened (HidDeviceId device) const;

    const std::vector<TraceLine> trace;
    std::size_t position = 0; ///< the next line
    std::size_t requests = 0;
    std::size_t differentRequest = 0;
    std::int32_t version = 0;
};

} // namespace wqv
