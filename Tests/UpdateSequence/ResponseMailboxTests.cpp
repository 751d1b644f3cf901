// SPDX-License-Identifier: GPL-3.0-or-later
// What a wait brings, after every order of reports, interruptions and stops.

#include "ResponseMailbox.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace wqv
{
namespace
{

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;

struct ResponseMailboxTest : testing::Test
{
    ResponseMailbox mailbox;

    void store (const Bytes& report, bool wake = true) { mailbox.store (report, wake); }

    void expect (bool signalled, int code, int value)
    {
        const auto answer = mailbox.wait (0ms, [this] { mailbox.turned(); });
        EXPECT_EQ (answer.signalled, signalled);
        EXPECT_EQ (static_cast<int> (answer.code), code);
        EXPECT_EQ (answer.value, value);
    }
};

TEST_F (ResponseMailboxTest, aSignalIsTakenOnceAndTheReportStays)
{
    expect (false, 0, 0);

    // Two close together: the later one, and no signal behind.
    store ({ 0xF7, 30 });
    store ({ 0xF9, 31 });
    expect (true, 0xF9, 31);
    expect (false, 0xF9, 31);

    // A quiet report is there for whoever looks, but takes no signal away.
    store ({ 0xF8, 5 }, false);
    expect (false, 0xF8, 5);
    store ({ 0xF7, 6 });
    store ({ 0xFC, 7 }, false);
    expect (true, 0xFC, 7);

    // Of any length.
    store (Bytes (1100, 0xF7));
    store ({ 0xF9 });
    store ({});
    expect (true, 0xF9, 0xF7);

    store ({ 0xF9, 1 });
    mailbox.reset();
    expect (false, 0xF9, 1);
}

TEST_F (ResponseMailboxTest, aLateModeAnswerHidesNoOther)
{
    store ({ 0xF9, 1 });
    store ({ 0xF6, 2 });
    expect (true, 0xF9, 1);
    expect (true, 0xF6, 2);
    expect (false, 0xF6, 2);

    // Nor do others behind it, or an interruption, change the order.
    store ({ 0xF7, 1 });
    store ({ 0xF6, 2 });
    store ({ 0xFC, 3 });
    store ({ 0xF6, 4 });
    mailbox.interrupt();
    expect (true, 0xFC, 3);
    expect (true, 0, 0);

    // It is the answer to its own request, and then the last one counts.
    store ({ 0xF6, 1 });
    store ({ 0xF6, 2 });
    expect (true, 0xF6, 2);
    expect (false, 0xF6, 2);
}

TEST_F (ResponseMailboxTest, anInterruptionIsNotHiddenByAnAnswer)
{
    // Each in its turn, but what lay there before the worker's last wait is no answer.
    store ({ 0xFC, 1 });
    mailbox.interrupt();
    mailbox.interrupt();
    expect (true, 0xFC, 1);
    expect (true, 0, 0);
    expect (false, 0, 0);

    store ({ 0xF9, 1 }, false);
    mailbox.interrupt();
    expect (true, 0, 0);

    mailbox.interrupt();
    store ({ 0xF9, 1 });
    expect (true, 0, 0);
    expect (false, 0xF9, 1);
    store ({ 0xFB, 2 });
    expect (true, 0xFB, 2);

    store ({ 0xF9, 1 });
    mailbox.interrupt();
    mailbox.reset();
    expect (false, 0, 0);
}

TEST_F (ResponseMailboxTest, whatLiesUnreadAtTheEndOfAWaitIsAnAnswer)
{
    // More than once, and by another thread, as in the program.
    for (int i = 0; i < 3; ++i)
    {
        std::jthread reader;
        const auto turn = [&]
        {
            store ({ 0xF8, 1 });
            mailbox.turned();
        };
        const auto answer = mailbox.wait (0ms, [&] { reader = std::jthread (turn); });
        EXPECT_TRUE (answer.signalled);
        EXPECT_EQ (answer.code, ResponseCode::summaryAccepted);
    }
}

TEST_F (ResponseMailboxTest, aStopEndsEveryWaitForGood)
{
    store ({ 0xFC, 1 });
    mailbox.interrupt();
    mailbox.stop();
    EXPECT_EQ (mailbox.wait (1h, [] {}).code, ResponseCode::none);

    mailbox.reset();
    store ({ 0xFC, 1 });
    EXPECT_TRUE (mailbox.wait (1h, [] {}).signalled);
    expect (true, 0, 0);
}

TEST_F (ResponseMailboxTest, everyEventEndsAWaitInProgress)
{
    constexpr int rounds = 3000;
    std::atomic<int> woken { 0 };

    std::thread worker (
        [&]
        {
            for (int i = 0; i <= rounds; ++i)
            {
                EXPECT_EQ (mailbox.wait (1h, [] {}).code, i % 2 == 0 ? ResponseCode::none : ResponseCode::busy);
                ++woken;
            }
        });

    for (int i = 0; i < rounds; ++i)
    {
        // The worker may be waiting by now, or not yet.
        std::this_thread::yield();

        if (i % 2 == 0)
            mailbox.interrupt();
        else
            mailbox.store (std::array<std::uint8_t, 1> { 0xF7 }, true);

        while (woken <= i)
            std::this_thread::yield();
    }

    std::this_thread::yield();
    mailbox.stop();
    worker.join();
}

} // namespace
} // namespace wqv
