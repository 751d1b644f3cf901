// SPDX-License-Identifier: GPL-3.0-or-later
// Updates from the start button to the last screen, on two threads.

#include "UpdateFailure.h"
#include "UpdaterFixture.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace wqv
{

namespace
{

/** Every block has come whole, and nothing else. */
void expectUpdated (const UpdaterFixture& fixture)
{
    EXPECT_TRUE (fixture.controller.isUpdated());
    EXPECT_EQ (fixture.controller.hostErrors(), std::vector<std::string> {});
}

TEST (Update, isCompleteHoweverOftenStartIsPressed)
{
    UpdaterFixture fixture;
    fixture.reach (UPDATER_STATUS_READY);

    for (int i = 0; i < 3; ++i)
        fixture.pressOk();

    fixture.runUntil (UPDATER_STATUS_COMPLETE);

    EXPECT_EQ (fixture.controller.codes(), smallUpdate);
    EXPECT_EQ (fixture.updater->progress(), 1.0);
    EXPECT_EQ (fixture.quits, 0);
    EXPECT_EQ (fixture.shown, (std::vector { UPDATER_STATUS_READY, UPDATER_STATUS_UPDATING, UPDATER_STATUS_COMPLETE }));
    expectUpdated (fixture);
}

TEST (Update, noFirstAnswerIsLost)
{
    MessageLoop keepsJuce;

    for (int i = 0; i < 200; ++i)
    {
        const auto isBeforeTheLoop = i % 2 != 0;
        UpdaterFixture fixture (isBeforeTheLoop ? "silent@1-2" : "silent@2");
        fixture.reach (UPDATER_STATUS_READY);
        fixture.pressOk();
        fixture.pressOk();

        // The worker asks for "updating" before it sends. An answer may outrun that on its way through the loop.
        if (isBeforeTheLoop)
        {
            fixture.waitForFirst();
            fixture.pressOk();
            fixture.deliver ({ 0xF6, 1 });
            ASSERT_EQ (fixture.updater->status(), UPDATER_STATUS_UPDATING);
        }

        fixture.runUntilSent (2);
        ASSERT_EQ (fixture.quits, 0);
        ASSERT_EQ (fixture.controller.codes(), (std::vector { 0xF4, 0xF0 }));
    }
}

TEST (Update, survivesThousandsOfBursts)
{
    PackageDescription package { .version = 105, .blocks = {} };
    package.blocks.push_back ({ .id = 1, .data = std::vector<std::uint8_t> (3000 * pieceSize + 1, 0x5A) });

    UpdaterFixture fixture ("burst@4-3004:3", writePackage (package));
    fixture.reach (UPDATER_STATUS_COMPLETE);

    EXPECT_EQ (fixture.controller.codes().size(), 3 + 3001 + 1U);
    expectUpdated (fixture);
}

TEST (Update, aControllerThatCameBackInTheMiddleIsNeverComplete)
{
    MessageLoop keepsJuce;

    for (std::size_t request = 2; request <= smallUpdate.size(); ++request)
    {
        UpdaterFixture fixture ("replug@" + std::to_string (request) + ":0");
        fixture.reach (UPDATER_STATUS_ERROR);

        const auto& failure = fixture.updater->failure();
        EXPECT_EQ (failure.cause, UpdateFailure::Cause::interrupted);
        EXPECT_EQ (static_cast<int> (failure.request), smallUpdate[request - 1]);
    }
}

TEST (Update, anUnplugCannotOverwriteItsStart)
{
    MessageLoop keepsJuce;

    for (int i = 0; i < 400; ++i)
    {
        UpdaterFixture fixture ("silent@2-99");
        fixture.reach (UPDATER_STATUS_READY);
        fixture.shown.clear();

        fixture.pressOk();
        fixture.loop.drain (i % 4);
        fixture.unplug();
        fixture.runUntil (UPDATER_STATUS_UPDATING);
        fixture.loop.drain();

        // A controller that had been quick enough to enter update mode fails the update; a screen without one comes never.
        ASSERT_EQ (fixture.shown.front(), UPDATER_STATUS_UPDATING);
        ASSERT_EQ (std::ranges::count (fixture.shown, UPDATER_STATUS_NOT_CONNECTED), 0);
    }
}

TEST (Update, asksAControllerAgainThatCameBackBeforeItAnswered)
{
    UpdaterFixture fixture ("silent@1-99");
    fixture.plugIn();
    fixture.service.plugIn (nullptr);
    fixture.reach (UPDATER_STATUS_UPDATING);
    fixture.unplug();
    EXPECT_EQ (fixture.updater->deviceVersion(), -1); // and no other one in its place
    fixture.plugIn();
    fixture.runUntilSent (2);
}

} // namespace
} // namespace wqv
