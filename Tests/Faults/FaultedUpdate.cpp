// SPDX-License-Identifier: GPL-3.0-or-later
// Runs an update between a real updater and a virtual controller, and records it.

#include "FaultedUpdate.h"

#include "Responses.h"
#include "TracedHidService.h"
#include "UpdaterFixture.h"

#include <array>
#include <sstream>

namespace wqv
{
namespace
{

using Clock = std::chrono::steady_clock;

class RecordedUpdate final : public UpdaterSurroundings, private Updater::Listener
{
public:
    using UpdaterSurroundings::UpdaterSurroundings;

    FaultedUpdate run()
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
        loop.runUntil ([this] { return isOver(); });
        update.duration = std::chrono::duration_cast<std::chrono::milliseconds> (Clock::now() - begin);
        const auto requestsBefore = controller.codes().size();

        tryToChangeTheOutcome();
        update.sendsAfterEnd = controller.codes().size() > requestsBefore;
        update.status = updater->status();
        update.failure = updater->failure();
        update.deviceVersion = updater->deviceVersion();
        update.isAwake = ! awake.expired();

        updater.reset();
        readWhatCameOfIt();
        return update;
    }

private:
    void updaterChanged() override { update.shown.push_back (updater->status()); }

    [[nodiscard]] bool isOver() const
    {
        return updater->status() == UPDATER_STATUS_COMPLETE || updater->status() == UPDATER_STATUS_ERROR;
    }

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

    void readWhatCameOfIt()
    {
        update.trace = stream.str();
        update.receivedBlocks = controller.receivedBlocks();
        update.hostErrors = controller.hostErrors();
        update.isUpdated = controller.isUpdated();
    }

    FaultedUpdate update;
    std::stringstream stream;
    TraceWriter trace { stream };
    TracedHidService traced { service, trace };
    std::optional<Updater> updater;
};

} // namespace

FaultedUpdate runUpdate (const std::string& script)
{
    auto update = RecordedUpdate (script).run();
    update.script = script;
    update.faults = parseFaultScript (script).value();
    return update;
}

} // namespace wqv
