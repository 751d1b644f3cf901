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

const auto endlessUpdate = "silent@1-99";

using Event = void (*) (UpdaterFixture&);

/** After a removal, if a controller was plugged in. */
void attach (UpdaterFixture& fixture)
{
    fixture.unplug();
    fixture.plugIn();
}

/** After an attachment, if none was. */
void removal (UpdaterFixture& fixture)
{
    fixture.plugIn();
    fixture.unplug();
}

/** An answer that makes a running update fail. */
constexpr Event report = [] (UpdaterFixture& fixture) { fixture.deliver ({ 0xF6, 2 }); };
constexpr Event confirm = [] (UpdaterFixture& fixture) { fixture.pressOk(); };
constexpr Event leave = [] (UpdaterFixture& fixture) { fixture.pressCancel(); };

constexpr Event allEvents[] { attach, removal, report, confirm, leave };

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
        for (std::size_t i = 0; i < std::size (allEvents); ++i)
        {
            const auto event = allEvents[i];
            const auto expected = static_cast<UpdaterStatus_t> (letters.find (to.at (i)));
            const auto* const faults = from == 'C' ? "" : from == 'E' ? "refuse@1" : endlessUpdate;
            SCOPED_TRACE (testing::Message()
                          << from << ", package " << hasPackage << ", plugged in " << isPluggedIn << ", event " << i);
            UpdaterFixture fixture (faults, writePackage (smallPackage (hasPackage ? 105 : 0)));

            if (isPluggedIn)
                fixture.plugIn();

            fixture.reach (static_cast<UpdaterStatus_t> (letters.find (from)));

            if (! isPluggedIn)
                fixture.unplug();

            fixture.loop.drain();
            event (fixture);

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
            const auto quits = event == leave || (event == confirm && from != 'S' && from != 'R');
            EXPECT_EQ (fixture.quits, quits ? 1 : 0);
        }
}

TEST (Status, plugAndUnplugScreenByScreen)
{
    UpdaterFixture fixture;
    fixture.reach (UPDATER_STATUS_START);
    std::vector versions { fixture.updater->deviceVersion() };
    fixture.whenShown = [&] { versions.push_back (fixture.updater->deviceVersion()); };

    for (const auto event : { attach, removal, attach, confirm, removal, attach })
    {
        event (fixture);
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

    attach (fixture);
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
        attach (fixture);
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
