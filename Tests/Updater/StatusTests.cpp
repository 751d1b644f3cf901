// SPDX-License-Identifier: GPL-3.0-or-later
// The status machine: every event in every status, with a good and a bad package.

#include "UpdaterFixture.h"

#include <gtest/gtest.h>

namespace wqv
{

namespace
{

using Statuses = std::vector<UpdaterStatus_t>;

enum class Event
{
    attach,  ///< after a removal, if a controller was plugged in
    removal, ///< after an attachment, if none was
    report,  ///< an answer that makes a running update fail
    confirm,
    leave
};

/** One status and one event, and the rules for what comes of them. */
struct Situation
{
    UpdaterStatus_t from;
    bool hasPackage;  ///< a good one
    bool isPluggedIn; ///< before the event
    Event event;

    /** A bad package stops at the second screen; whether a controller is there tells the two middle screens apart. */
    [[nodiscard]] bool isPossible() const
    {
        return hasPackage ? (from != UPDATER_STATUS_NOT_CONNECTED || ! isPluggedIn)
                                && (from != UPDATER_STATUS_READY || isPluggedIn)
                          : from <= UPDATER_STATUS_NOT_CONNECTED;
    }

    [[nodiscard]] bool isDeviceEvent() const { return event == Event::attach || event == Event::removal; }

    /** Only a good package looks for the controller. */
    [[nodiscard]] bool isConnectedAfterwards() const
    {
        return hasPackage && (event == Event::attach || (isPluggedIn && event != Event::removal));
    }

    /** "OK" leaves the first screen and starts an update; everywhere else it ends the program, as "Cancel" does. */
    [[nodiscard]] bool quits() const
    {
        const auto goesOn = from == UPDATER_STATUS_START || from == UPDATER_STATUS_READY;
        return event == Event::leave || (event == Event::confirm && ! goesOn);
    }

    [[nodiscard]] UpdaterStatus_t expected() const
    {
        const auto presence = isConnectedAfterwards() ? UPDATER_STATUS_READY : UPDATER_STATUS_NOT_CONNECTED;

        if (from == UPDATER_STATUS_START)
            return event == Event::confirm ? presence : from;

        if (! hasPackage || from == UPDATER_STATUS_COMPLETE || from == UPDATER_STATUS_ERROR)
            return from;

        if (from == UPDATER_STATUS_UPDATING)
            return quits() || (event == Event::report && isPluggedIn) ? UPDATER_STATUS_ERROR : from;

        return event == Event::confirm && ! quits() ? UPDATER_STATUS_UPDATING : isDeviceEvent() ? presence : from;
    }

    /** Known from the first thing on that happens to the controller, or "OK". */
    [[nodiscard]] std::int32_t expectedVersion() const
    {
        const auto isUnasked = from == UPDATER_STATUS_START && ! isDeviceEvent() && event != Event::confirm;
        const auto isUpdated = from == UPDATER_STATUS_COMPLETE && event == Event::attach;
        return ! isConnectedAfterwards() || isUnasked ? -1 : isUpdated ? 105 : 100;
    }

    /** An event that asks for the screen that shows already shows it anew. */
    [[nodiscard]] bool isShown() const
    {
        const auto isMiddle = from == UPDATER_STATUS_NOT_CONNECTED || from == UPDATER_STATUS_READY;
        return from != expected() || (isDeviceEvent() && hasPackage && isMiddle);
    }
};

const auto endlessUpdate = "silent@1-99";

void play (UpdaterFixture& fixture, Event event)
{
    switch (event)
    {
        case Event::attach:
            fixture.unplug();
            fixture.plugIn();
            break;

        case Event::removal:
            fixture.plugIn();
            fixture.unplug();
            break;

        case Event::report: fixture.deliver ({ 0xF6, 2 }); break;
        case Event::confirm: fixture.pressOk(); break;
        case Event::leave: fixture.pressCancel(); break;
    }
}

void check (const Situation& situation)
{
    const auto* const faults = situation.from == UPDATER_STATUS_COMPLETE ? ""
                               : situation.from == UPDATER_STATUS_ERROR  ? "refuse@1"
                                                                         : endlessUpdate;
    UpdaterFixture fixture (faults, writePackage (smallPackage (situation.hasPackage ? 105 : 0)));

    if (situation.isPluggedIn)
        fixture.plugIn();

    fixture.reach (situation.from);

    if (! situation.isPluggedIn)
        fixture.unplug();

    fixture.loop.drain();
    fixture.shown.clear();
    play (fixture, situation.event);

    if (situation.expected() >= UPDATER_STATUS_UPDATING)
        fixture.runUntil (situation.expected());

    fixture.loop.drain();

    EXPECT_EQ (fixture.updater->status(), situation.expected());
    EXPECT_EQ (fixture.updater->deviceVersion(), situation.expectedVersion());
    EXPECT_EQ (fixture.quits, situation.quits() ? 1 : 0);
    EXPECT_EQ (fixture.leavings, fixture.quits);
    EXPECT_EQ (fixture.shown, situation.isShown() ? Statuses { situation.expected() } : Statuses {});
}

TEST (Status, everyEventInEveryStatus)
{
    MessageLoop keepsTheToolkit;

    for (int from = UPDATER_STATUS_START; from <= UPDATER_STATUS_ERROR; ++from)
        for (const auto hasPackage : { true, false })
            for (const auto isPluggedIn : { true, false })
                for (const auto event : { Event::attach, Event::removal, Event::report, Event::confirm, Event::leave })
                    if (const Situation situation {
                            static_cast<UpdaterStatus_t> (from), hasPackage, isPluggedIn, event };
                        situation.isPossible())
                    {
                        SCOPED_TRACE (testing::Message()
                                      << "status " << from << ", package " << hasPackage << ", plugged in "
                                      << isPluggedIn << ", event " << static_cast<int> (event));
                        check (situation);
                    }
}

TEST (Status, plugAndUnplugScreenByScreen)
{
    UpdaterFixture fixture;
    fixture.reach (UPDATER_STATUS_START);
    std::vector<std::int32_t> versions;
    fixture.whenShown = [&] { versions.push_back (fixture.updater->deviceVersion()); };

    for (const auto event :
         { Event::attach, Event::removal, Event::attach, Event::confirm, Event::removal, Event::attach })
    {
        play (fixture, event);
        fixture.loop.drain();
    }

    // What was asked for on the first screen is never applied.
    EXPECT_EQ (fixture.shown, (Statuses { UPDATER_STATUS_READY, UPDATER_STATUS_NOT_CONNECTED, UPDATER_STATUS_READY }));
    EXPECT_EQ (versions, (std::vector<std::int32_t> { 100, -1, 100 }));
}

TEST (Status, whoeverIsToldHoldsNothingUp)
{
    UpdaterFixture fixture (endlessUpdate);
    fixture.reach (UPDATER_STATUS_READY);
    auto wasSent = false;

    fixture.whenShown = [&]
    {
        if (fixture.updater->status() == UPDATER_STATUS_READY)
        {
            fixture.pressOk();
            wasSent = fixture.requests.waitForFirst(); // which the worker sends after it has asked for "updating"
        }
    };

    play (fixture, Event::attach);
    fixture.loop.drain();
    EXPECT_TRUE (wasSent);
}

TEST (Status, badPackagesOpenNothing)
{
    MessageLoop keepsTheToolkit;
    auto damaged = writePackage (smallPackage());
    damaged.at (100) ^= 1;

    const std::pair<const char*, std::vector<std::uint8_t>> packages[] = {
        { "damaged", damaged },
        { "version 0", writePackage (smallPackage (0)) },
        { "no data", writePackage ({ .version = 105, .blocks = { {} } }) },
        { "no file", {} },
    };

    for (const auto& [name, package] : packages)
    {
        SCOPED_TRACE (name);
        UpdaterFixture fixture ({}, package);
        fixture.plugIn();
        fixture.reach (UPDATER_STATUS_NOT_CONNECTED);
        play (fixture, Event::attach);
        fixture.loop.drain();

        EXPECT_FALSE (fixture.updater->packageValid());
        EXPECT_EQ (fixture.updater->status(), UPDATER_STATUS_NOT_CONNECTED);
        EXPECT_EQ (fixture.requests.timesOpened(), 0);
    }
}

} // namespace
} // namespace wqv
