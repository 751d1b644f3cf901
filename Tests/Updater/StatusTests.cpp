// SPDX-License-Identifier: GPL-3.0-or-later
// The status machine: every event in every status, with a good and a bad package.

#include "UpdaterFixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string_view>
#include <utility>

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

constexpr Event allEvents[] { Event::attach, Event::removal, Event::report, Event::confirm, Event::leave };

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

/** The letters of the statuses, by their number. */
constexpr std::string_view letters = "SNRUCE";

/** A status, and those that the events lead to. */
struct Row
{
    char from;
    bool hasPackage;  ///< a good one
    bool isPluggedIn; ///< before the event
    std::string_view to;
};

constexpr Row rows[] {
    { 'S', true, true, "SSSRS" },  { 'S', true, false, "SSSNS" },  { 'N', true, false, "RNNNN" },
    { 'R', true, true, "RNRUR" },  { 'U', true, true, "UUEUU" },   { 'U', true, false, "UUUUU" },
    { 'C', true, true, "CCCCC" },  { 'C', true, false, "CCCCC" },  { 'E', true, true, "EEEEE" },
    { 'E', true, false, "EEEEE" }, { 'S', false, true, "SSSNS" },  { 'S', false, false, "SSSNS" },
    { 'N', false, true, "NNNNN" }, { 'N', false, false, "NNNNN" },
};

TEST (Status, everyEventInEveryStatus)
{
    MessageLoop keepsJuce;

    for (const auto& [from, hasPackage, isPluggedIn, to] : rows)
        for (const auto event : allEvents)
        {
            const auto expected =
                static_cast<UpdaterStatus_t> (letters.find (to.at (static_cast<std::size_t> (event))));
            const auto* const faults = from == 'C' ? "" : from == 'E' ? "refuse@1" : endlessUpdate;
            SCOPED_TRACE (testing::Message() << from << ", package " << hasPackage << ", plugged in " << isPluggedIn
                                             << ", event " << static_cast<int> (event));
            UpdaterFixture fixture (faults, writePackage (smallPackage (hasPackage ? 105 : 0)));

            if (isPluggedIn)
                fixture.plugIn();

            fixture.reach (static_cast<UpdaterStatus_t> (letters.find (from)));

            if (! isPluggedIn)
                fixture.unplug();

            fixture.loop.drain();
            play (fixture, event);

            if (expected >= UPDATER_STATUS_UPDATING)
                fixture.runUntil (expected);

            fixture.loop.drain();
            EXPECT_EQ (fixture.updater->status(), expected);
            EXPECT_EQ (fixture.awake.expired(), expected != UPDATER_STATUS_UPDATING);

            EXPECT_EQ (fixture.updater->deviceVersion(),
                       expected == UPDATER_STATUS_READY           ? 100
                       : expected == UPDATER_STATUS_NOT_CONNECTED ? -1
                                                                  : fixture.updater->deviceVersion());

            // "OK" leaves the first screen and starts an update; everywhere else it ends the program, as "Cancel" does.
            const auto quits = event == Event::leave || (event == Event::confirm && from != 'S' && from != 'R');
            EXPECT_EQ (fixture.quits, quits ? 1 : 0);
        }
}

TEST (Status, plugAndUnplugScreenByScreen)
{
    UpdaterFixture fixture;
    fixture.reach (UPDATER_STATUS_START);
    std::vector versions { fixture.updater->deviceVersion() };
    fixture.whenShown = [&] { versions.push_back (fixture.updater->deviceVersion()); };

    for (const auto event :
         { Event::attach, Event::removal, Event::attach, Event::confirm, Event::removal, Event::attach })
    {
        play (fixture, event);
        fixture.loop.drain();
    }

    // What was asked for on the first screen is never applied.
    EXPECT_EQ (fixture.shown, (Statuses { UPDATER_STATUS_READY, UPDATER_STATUS_NOT_CONNECTED, UPDATER_STATUS_READY }));
    EXPECT_EQ (versions, (std::vector<std::int32_t> { -1, 100, -1, 100 }));
}

TEST (Status, whoeverIsToldHoldsNothingUp)
{
    UpdaterFixture fixture (endlessUpdate);
    fixture.reach (UPDATER_STATUS_READY);
    fixture.whenShown = [&]
    {
        if (fixture.updater->status() == UPDATER_STATUS_READY)
        {
            fixture.pressOk();
            fixture.waitForFirst(); // which the worker sends after it has asked for "updating"
        }
    };

    play (fixture, Event::attach);
    fixture.loop.drain();
}

TEST (Status, badPackagesOpenNothing)
{
    MessageLoop keepsJuce;
    auto damaged = writePackage (smallPackage());
    damaged.at (100) ^= 1;

    for (const auto& package :
         { damaged, writePackage (smallPackage (0)), writePackage ({ .version = 105, .blocks = { {} } }), {} })
    {
        SCOPED_TRACE (testing::Message() << "package of " << package.size() << " bytes");
        UpdaterFixture fixture ({}, package);
        fixture.plugIn();
        fixture.reach (UPDATER_STATUS_NOT_CONNECTED);
        play (fixture, Event::attach);
        fixture.loop.drain();

        EXPECT_FALSE (fixture.updater->packageValid());
        EXPECT_EQ (fixture.updater->deviceVersion(), -1);
    }
}

TEST (Status, aPackageInTheCurrentDirectoryIsNotTakenForWantOfAFolder)
{
    UpdaterFixture fixture;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path (std::exchange (fixture.packageFolder, {}));
    fixture.reach (UPDATER_STATUS_NOT_CONNECTED);
    std::filesystem::current_path (before);

    EXPECT_FALSE (fixture.updater->packageValid());
}

} // namespace
} // namespace wqv
