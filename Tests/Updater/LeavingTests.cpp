// SPDX-License-Identifier: GPL-3.0-or-later
// Leaving and deleting the updater at any moment of an update. A wait that does not end at once shows as a time-out.

#include "UpdaterFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace wqv
{

namespace
{

/** Ends in the middle of an update. All is done at once: nothing is left to the message loop, which may never run again. */
void end (UpdaterFixture& fixture, bool deletes)
{
    fixture.shown.clear();

    if (deletes)
        fixture.updater.reset();
    else
        fixture.updater->abandon();

    EXPECT_TRUE (fixture.shown.empty() && fixture.quits == 0);

    if (const auto sent = fixture.controller.codes(); ! deletes)
    {
        fixture.pressOk(); // too late to begin anew: a worker that should not be there sends at once

        for (int i = 0; i < 1000; ++i)
            std::this_thread::yield();

        fixture.updater->abandon();
        EXPECT_EQ (fixture.controller.codes(), sent);
    }
    else
    {
        fixture.loop.drain();
    }

    EXPECT_EQ (fixture.controller.hostErrors(), std::vector<std::string> {});
}

TEST (Leaving, whileTheWorkerWaitsForTheAnswerToAnyRequest)
{
    MessageLoop keepsJuce;

    // Several times, since a request that slips out behind the order to end does so now and then.
    for (std::size_t i = 0; i < 5 * smallUpdate.size(); ++i)
    {
        const auto request = 1 + i % smallUpdate.size();

        for (const auto deletes : { true, false })
        {
            SCOPED_TRACE (testing::Message() << "request " << request << ", deleted " << deletes);
            UpdaterFixture fixture ("silent@" + std::to_string (request));
            fixture.reach (UPDATER_STATUS_UPDATING);
            fixture.runUntilSent (request);
            end (fixture, deletes);

            // A controller that has been promised a block is told that there is no more to come, once.
            auto expected = smallUpdate;
            expected.resize (request);

            if (std::ranges::count (expected, 0xF1) > 0 && expected.back() != 0xF2)
                expected.push_back (0xF2);

            EXPECT_EQ (fixture.controller.codes(), expected);
        }
    }
}

TEST (Leaving, afterAnyNumberOfMessages)
{
    MessageLoop keepsJuce;

    for (int i = 0; i < 200; ++i)
    {
        SCOPED_TRACE (testing::Message() << "messages " << i / 2 % 25 << ", deleted " << i % 2);
        UpdaterFixture fixture ("burst@4-99:2,silent@8");
        fixture.reach (UPDATER_STATUS_READY);
        fixture.pressOk();
        fixture.loop.drain (i / 2 % 25);
        end (fixture, i % 2 != 0);
    }
}

TEST (Leaving, afterTheLastAnswerIsComplete)
{
    UpdaterFixture fixture ("silent@8");
    fixture.reach (UPDATER_STATUS_UPDATING);
    fixture.runUntilSent (8);
    fixture.deliver ({ 0xFC, 7 });

    while (fixture.updater->progress() != 0.07)
        std::this_thread::yield();

    fixture.updater->abandon();
    EXPECT_TRUE (fixture.updater->isComplete());
    EXPECT_EQ (fixture.updater->status(), UPDATER_STATUS_UPDATING);
}

TEST (Leaving, isForGood)
{
    UpdaterFixture fixture;
    fixture.reach (UPDATER_STATUS_READY);
    fixture.pressCancel();
    fixture.pressCancel();
    fixture.pressOk();
    fixture.updater->abandon(); // which waits for a worker that should not be there
    fixture.loop.drain();
    EXPECT_EQ (fixture.quits, 1);
    EXPECT_EQ (fixture.updater->status(), UPDATER_STATUS_READY);
    EXPECT_TRUE (fixture.controller.codes().empty());
}

} // namespace
} // namespace wqv
