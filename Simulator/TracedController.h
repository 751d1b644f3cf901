// SPDX-License-Identifier: GPL-3.0-or-later
// A controller that does again what a trace says that one did.

#pragma once

#include "SimulatedController.h"
#include "Trace.h"

#include <cstddef>
#include <optional>
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
    void happens (const Event& event) override;

    /** That of the device that the first request went to; then that of each one that was plugged in. */
    [[nodiscard]] std::int32_t versionNumber() const override { return version; }

    /** Which request was the first that was not the recorded one, for people; empty if there was none. */
    [[nodiscard]] std::string firstDifference() const;

private:
    [[nodiscard]] std::optional<Event> play (const TraceLine& line);
    [[nodiscard]] bool isOpenedNext (HidDeviceId device) const;

    const std::vector<TraceLine> trace;
    std::size_t position = 0; ///< the next line; between two requests it is the next request
    HidDeviceId held = 0;     ///< the device that stands for the controller at that line; 0 for none
    std::size_t requests = 0;
    std::size_t differentRequest = 0;
    std::int32_t version = 0;
};

} // namespace wqv
