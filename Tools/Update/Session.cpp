// SPDX-License-Identifier: GPL-3.0-or-later
// What each status of the updater leads to.

#include "Session.h"

#include "FaultText.h"
#include "UpdatePackage.h"

#include <utility>

namespace wqv
{
namespace
{

constexpr int progressInterval = 100; // milliseconds

/** Why the updater does not take a package. */
std::string reasonAgainst (const std::filesystem::path& package)
{
    if (package.empty())
        return "the system does not say where this program lies";

    upd_info_t info;
    FirmwareBlocks blocks;
    const auto verdict = loadPackage (package, info, blocks);
    return package.string() + ": " + reasonNotOffered (verdict, info);
}

/** A version, 105 becoming 0x0105. */
std::int32_t asInDescriptor (std::int32_t version)
{
    return version / 1000 % 10 * 0x1000 + version / 100 % 10 * 0x100 + version / 10 % 10 * 0x10 + version % 10;
}

} // namespace

Session::Session (DeviceRoster& rosterToUse, Reporter& reporterToUse, Settings settingsToUse)
    : roster (rosterToUse), reporter (reporterToUse), settings (std::move (settingsToUse))
{
}

Session::~Session()
{
    stopTimer();
    cancelPendingUpdate();
}

void Session::start()
{
    takeNext();
}

void Session::takeNext()
{
    isBegun = false;
    isMissed = false;
    offered.reset();
    updater.emplace (Updater::Host { .hidService = roster,
                                     .folder = {},
                                     .quit = [] {},
                                     .package = settings.package,
                                     .keepAwake = settings.keepAwake },
                     static_cast<Updater::Listener&> (*this));

    if (updater->packageValid())
    {
        updater->confirm();
        return;
    }

    reporter.outcome ({ .result = Result::badPackage, .reason = reasonAgainst (settings.package) });
    end (ExitStatus::badPackage);
}

void Session::stop()
{
    if (isOver)
        return;

    updater->abandon();
    stopTimer();
    handleUpdateNowIfNeeded(); // the update may have ended before it was stopped

    if (! isOver && updater->isComplete()) // or at its very end, which its status does not show
        judge();

    if (isOver)
        return;

    if (isBegun)
    {
        reporter.outcome ({ .result = Result::stopped, .failure = updater->failure(), .number = numberOfTurn() });
        ++notComplete;
    }
    else if (! settings.repeats)
    {
        reporter.outcome ({ .result = Result::stopped, .reason = "nothing was sent" });
    }

    end (settings.repeats && complete > 0 && notComplete == 0 ? ExitStatus::complete : ExitStatus::failed);
}

/** The updater's status was set, perhaps more than once. It may be replaced here, but not in its own callback. */
void Session::handleAsyncUpdate()
{
    if (isOver)
        return;

    switch (updater->status())
    {
        case UPDATER_STATUS_START: break;
        case UPDATER_STATUS_NOT_CONNECTED: missController(); break;
        case UPDATER_STATUS_READY: offer(); break;
        case UPDATER_STATUS_UPDATING: startTimer (progressInterval); break;
        case UPDATER_STATUS_COMPLETE:
        case UPDATER_STATUS_ERROR: judge(); break;
    }
}

void Session::missController()
{
    offered.reset();

    if (! settings.waits && ! settings.repeats)
    {
        reporter.outcome ({ .result = Result::noController, .reason = reasonForNone (roster.entries()) });
        end (ExitStatus::noController);
    }
    else if (! std::exchange (isMissed, true))
    {
        reporter.waiting (reasonForNone (roster.entries()));
    }
}

/** Shows the controller, and asks, once for each version that is seen. */
void Session::offer()
{
    isMissed = false;

    if (isBegun || offered == updater->deviceVersion())
        return;

    offered = updater->deviceVersion();
    reporter.versions (*offered, updater->packageVersion(), numberOfTurn());

    if (! settings.asks)
    {
        begin();
        return;
    }

    reporter.question();

    if (! std::exchange (isReading, true))
        settings.readAnswer ([this] (const std::string& line) { answered (line); });
}

void Session::answered (const std::string& line)
{
    isReading = false;
    reporter.answered();

    // The controller may have gone meanwhile; the next one is asked about anew.
    if (isOver || updater->status() != UPDATER_STATUS_READY)
        return;

    if (line == "y" || line == "Y" || line == "yes")
        begin();
    else
        conclude ({ .result = Result::declined });
}

void Session::begin()
{
    isBegun = true;
    updater->confirm();
}

void Session::judge()
{
    stopTimer();
    reporter.progress (updater->progress());

    if (updater->isComplete())
        conclude ({ .result = Result::complete });
    else
        conclude ({ .result = Result::failed, .failure = updater->failure() });
}

void Session::conclude (Outcome outcome)
{
    const auto isComplete = outcome.result == Result::complete;
    outcome.number = numberOfTurn();
    ++(isComplete ? complete : notComplete);
    reporter.outcome (outcome);

    if (! settings.repeats)
    {
        end (isComplete ? ExitStatus::complete : ExitStatus::failed);
        return;
    }

    roster.keepBack (outcome.failure && outcome.failure->cause == UpdateFailure::Cause::interrupted,
                     isComplete ? asInDescriptor (updater->packageVersion()) : 0);
    takeNext();
}

int Session::numberOfTurn() const
{
    return settings.repeats ? complete + notComplete + 1 : 0;
}

void Session::end (ExitStatus how)
{
    isOver = true;
    status = how;

    if (settings.repeats)
        reporter.summary (complete, notComplete);

    settings.onEnd();
}

} // namespace wqv
