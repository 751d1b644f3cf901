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

enum class Way
{
    leave,
    deletion,
    both,
    abandonment
};

/** Leaves or deletes the updater in the middle of an update, and checks what everybody notices of it. */
void end (UpdaterFixture& fixture, Way way)
{
    fixture.shown.clear();

    if (way == Way::abandonment)
    {
        // All is done at once, and nothing is left to the message loop, which may never run again.
        fixture.updater->abandon();
        EXPECT_TRUE (fixture.shown.empty() && fixture.leavings == 0 && fixture.quits == 0);
        return;
    }

    if (way != Way::deletion)
        fixture.pressCancel();

    if (way == Way::leave)
    {
        fixture.unplug(); // which changes nothing any more
        fixture.runUntil (UPDATER_STATUS_ERROR);
    }
    else
    {
        fixture.updater.reset();
    }

    fixture.loop.drain();

    EXPECT_EQ (fixture.quits, way == Way::deletion ? 0 : 1);
    EXPECT_EQ (std::ranges::count (fixture.shown, UPDATER_STATUS_COMPLETE), 0);
    EXPECT_TRUE (way == Way::leave || fixture.shown.empty());
    EXPECT_EQ (fixture.controller.hostErrors(), std::vector<std::string> {});
}

TEST (Leaving, whileTheWorkerWaitsForTheAnswerToAnyRequest)
{
    MessageLoop keepsJuce;

    // Several times, since a request that slips out behind the order to end does so now and then.
    for (std::size_t i = 0; i < 5 * smallUpdate.size(); ++i)
    {
        const auto request = 1 + i % smallUpdate.size();

        for (const auto way : { Way::leave, Way::deletion, Way::both, Way::abandonment })
        {
            SCOPED_TRACE (testing::Message() << "request " << request << ", way " << static_cast<int> (way));
            UpdaterFixture fixture ("silent@" + std::to_string (request));
            fixture.reach (UPDATER_STATUS_UPDATING);
            fixture.runUntilSent (request);
            end (fixture, way);

            // A controller that has been promised a block is told that there is no more to come, once.
            auto expected = smallUpdate;
            expected.resize (request);

            if (std::ranges::count (expected, 0xF1) > 0 && expected.back() != 0xF2)
                expected.push_back (0xF2);

            EXPECT_EQ (fixture.requests.codes(), expected);
        }
    }
}

TEST (Leaving, afterAnyNumberOfMessages)
{
    MessageLoop keepsJuce;

    for (int i = 0; i < 300; ++i)
    {
        SCOPED_TRACE (testing::Message() << "messages " << i / 3 % 25 << ", way " << i % 3);
        UpdaterFixture fixture ("burst@4-99:2,silent@8");
        fixture.reach (UPDATER_STATUS_READY);
        fixture.pressOk();
        fixture.loop.drain (i / 3 % 25);
        end (fixture, static_cast<Way> (i % 3));
    }
}

TEST (Leaving, isNotCompleteThoughTheControllerHasFinished)
{
    UpdaterFixture fixture ("silent@8");
    fixture.reach (UPDATER_STATUS_UPDATING);
    fixture.runUntilSent (8);
    fixture.deliver ({ 0xFC, 55 });

    // The worker tells the last figure before it pauses, and the outcome after that.
    while (fixture.updater->progress() != 0.55)
        std::this_thread::yield();

    end (fixture, Way::leave);
}

TEST (Leaving, isForGood)
{
    UpdaterFixture fixture;
    fixture.reach (UPDATER_STATUS_READY);
    fixture.pressCancel();
    fixture.pressOk();
    fixture.pressCancel(); // which waits for a worker that should not be there, and whose outcome would show
    fixture.loop.drain();
    EXPECT_EQ (fixture.updater->status(), UPDATER_STATUS_READY);
    EXPECT_TRUE (fixture.requests.codes().empty());
}

} // namespace
} // namespace wqv
