// SPDX-License-Identifier: GPL-3.0-or-later
// The changes of status: what the user, the worker and the controller lead to.

#include "Updater.h"

#include "HidCtrl.h"
#include "ResponseMailbox.h"
#include "UpdatePackage.h"
#include "UpdateWorker.h"

#include <filesystem>
#include <tuple>
#include <utility>

namespace wqv
{
namespace
{

constexpr std::int32_t noRequest = -1;

} // namespace

/** The parts, in the order in which they are made. The worker, which uses all others, is deleted first. */
struct Updater::Engine final : HidHandler
{
    explicit Engine (Updater& updater) : owner (updater) {}

    void removalCallBack() override { owner.removalCallBack(); }
    void matchingCallBack() override { owner.matchingCallBack(); }
    void inputCallBack() override { owner.inputCallBack(); }

    Updater& owner;
    upd_info_t upd_info;
    FirmwareBlocks fw_info;
    ResponseMailbox mailbox;
    HidCtrl hidCtrl { owner.host.hidService };
    UpdateWorker worker { { upd_info,
                            fw_info,
                            hidCtrl,
                            mailbox,
                            owner.progressOfUpdate,
                            [this] (UpdaterStatus_t status) { owner.post (status); },
                            [this] { owner.askForTurn(); } } };
};

Updater::Updater (Host hostToUse, Listener& listenerToUse)
    : host (std::move (hostToUse)),
      listener (listenerToUse),
      pendingStatus (noRequest),
      engine (std::make_unique<Engine> (*this))
{
    const auto& package = host.package.empty() ? packageIn (host.folder) : host.package;
    const auto result = checkUPD (package, engine->upd_info, engine->fw_info);
    packageIsValid = isPackageValid (result, engine->upd_info);

    // Without a session there is never a controller, and the screen then says so.
    std::ignore = engine->hidCtrl.initialize (*engine, packageIsValid ? 1 : 0);
}

Updater::~Updater()
{
    engine.reset();
    cancelPendingUpdate();
}

std::filesystem::path Updater::packageIn (const std::filesystem::path& folder)
{
    // If the folder is not known there is no package: a bare name would be looked for in the current directory.
    return folder.empty() ? std::filesystem::path() : folder / packageFileName;
}

std::int32_t Updater::packageVersion() const
{
    return engine->upd_info.version;
}

bool Updater::isComplete() const
{
    return engine->worker.isComplete();
}

const UpdateFailure& Updater::failure() const
{
    return engine->worker.failure();
}

void Updater::updateSequence (UpdaterStatus_t next)
{
    const auto isFinal = currentStatus == UPDATER_STATUS_COMPLETE || currentStatus == UPDATER_STATUS_ERROR;

    if (currentStatus != UPDATER_STATUS_START && (! packageIsValid || isFinal))
        return;

    currentStatus = next;

    if (currentStatus != UPDATER_STATUS_UPDATING)
        isAwake.reset();
    else if (isAwake == nullptr && host.keepAwake)
        isAwake = host.keepAwake();

    listener.updaterChanged();
}

/** Asks for a status from any thread. Requests overwrite one another. */
void Updater::post (UpdaterStatus_t requested)
{
    const juce::ScopedLock guard (lock);
    pendingStatus = requested;
    triggerAsyncUpdate();
}

/** Called by the worker. Where the system cannot be asked for what the controller has sent, one round of the message loop may
    deal with this before it reads that, but the round after it has read it. */
void Updater::askForTurn()
{
    turnsWanted = 2;
    triggerAsyncUpdate();
}

void Updater::takeTurn()
{
    if (turnsWanted == 0)
        return;

    engine->hidCtrl.readPending();

    if (--turnsWanted == 0)
        engine->mailbox.turned();
    else
        triggerAsyncUpdate();
}

void Updater::handleAsyncUpdate()
{
    takeTurn();

    // Only the user leaves the first screen. What is asked for there stays until the next request overwrites it.
    if (currentStatus == UPDATER_STATUS_START)
        return;

    applyRequest (UPDATER_STATUS_NOT_CONNECTED);
}

/** Applies the status that was asked for last, unless it is below @p lowest. Only the worker asks for "updating" and
    above; a device event has these applied before it is judged, so that it meets the status of a running update, wakes
    the worker, and does not overwrite what the worker has asked for. */
void Updater::applyRequest (UpdaterStatus_t lowest)
{
    auto requested = noRequest;

    {
        const juce::ScopedLock guard (lock);

        if (pendingStatus >= lowest)
            std::swap (requested, pendingStatus);
    }

    if (requested != noRequest)
        updateSequence (static_cast<UpdaterStatus_t> (requested));
}

void Updater::confirm()
{
    if (currentStatus == UPDATER_STATUS_START)
        leaveFirstScreen();
    else if (currentStatus == UPDATER_STATUS_READY && packageIsValid)
        startUpdate();
    else
        quitSequence();
}

void Updater::leave()
{
    quitSequence();
}

void Updater::abandon()
{
    engine->worker.stop();
}

void Updater::leaveFirstScreen()
{
    const auto connected = engine->hidCtrl.state() != HidCtrl::noDevice;

    versionOfDevice = connected ? engine->hidCtrl.version() : -1;
    updateSequence (connected ? UPDATER_STATUS_READY : UPDATER_STATUS_NOT_CONNECTED);
}

void Updater::startUpdate()
{
    // Only the first press counts: a second one, before what the worker asks for is applied, must neither delete the
    // signal of the first answer nor begin another update after one that has just failed.
    if (isLeaving || std::exchange (wasStarted, true))
        return;

    engine->mailbox.reset();

    if (! engine->worker.startThread())
        updateSequence (UPDATER_STATUS_ERROR);
}

void Updater::quitSequence()
{
    if (! std::exchange (isLeaving, true))
        host.quit();
}

/** The controller went away or came back: the worker is told, once there is an update; before, the screen changes. */
void Updater::deviceChanged (std::int32_t version, UpdaterStatus_t requested)
{
    applyRequest (UPDATER_STATUS_UPDATING);
    versionOfDevice = version;

    // What the worker asks for, or is about to, must not be overwritten.
    if (wasStarted)
        engine->mailbox.interrupt();
    else
        post (requested);
}

void Updater::removalCallBack()
{
    deviceChanged (-1, UPDATER_STATUS_NOT_CONNECTED);
}

void Updater::matchingCallBack()
{
    deviceChanged (engine->hidCtrl.version(), UPDATER_STATUS_READY);
}

void Updater::inputCallBack()
{
    applyRequest (UPDATER_STATUS_UPDATING);

    if (const auto report = engine->hidCtrl.inputReport(); ! report.empty())
        engine->mailbox.store (report, currentStatus == UPDATER_STATUS_UPDATING);
}

} // namespace wqv
