// SPDX-License-Identifier: GPL-3.0-or-later
// One update with all threads, of a controller with faults, and all that came of it.

#pragma once

#include "Responses.h"
#include "TracedHidService.h"
#include "UpdaterFixture.h"

#include <array>
#include <chrono>
#include <sstream>

namespace wqv
{

/** Updates a new virtual controller with the small package of the tests, waits for the outcome, and then tries to change it:
    by late answers, and by the controller being plugged in again. Message thread, one at a time. What came of it, controller and
    updater know too, whose worker has ended. */
class FaultedUpdate final : public UpdaterSurroundings, private Updater::Listener
{
public:
    using Clock = std::chrono::steady_clock;

    /** @param script  one that parseFaultScript() takes */
    explicit FaultedUpdate (const std::string& script) : UpdaterSurroundings (script)
    {
        plugIn();

        auto surroundings = host();
        updater.emplace (Updater::Host { .hidService = traced,
                                         .folder = surroundings.folder,
                                         .quit = surroundings.quit,
                                         .keepAwake = surroundings.keepAwake },
                         static_cast<Updater::Listener&> (*this));

        updater->confirm();
        const auto begin = Clock::now();
        updater->confirm();
        loop.runUntil ([this] { return updater->status() > UPDATER_STATUS_UPDATING; });
        duration = std::chrono::duration_cast<std::chrono::milliseconds> (Clock::now() - begin);

        const auto requestsBefore = controller.codes().size();
        tryToChangeTheOutcome();
        sendsAfterEnd = controller.codes().size() > requestsBefore;
    }

    std::vector<UpdaterStatus_t> shown;
    std::chrono::milliseconds duration {}; ///< from the start to the outcome
    bool sendsAfterEnd = false;
    std::stringstream trace;
    TraceWriter writer { trace };
    TracedHidService traced { service, writer };
    std::optional<Updater> updater;

private:
    void updaterChanged() override { shown.push_back (updater->status()); }

    void tryToChangeTheOutcome()
    {
        for (const auto& present : service.devices())
        {
            for (const auto code : { ResponseCode::updateFinished, ResponseCode::updateMode, ResponseCode::ready })
                service.deliver (present.id, std::array { static_cast<std::uint8_t> (code), std::uint8_t { 1 } });

            service.unplug (present.id);
        }

        loop.drain();
        service.plugIn (&controller);
        loop.drain();
    }
};

} // namespace wqv
