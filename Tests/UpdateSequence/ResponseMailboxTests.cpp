// SPDX-License-Identifier: GPL-3.0-or-later
// What a wait brings, after every order of reports, interruptions and stops.

#include "ResponseMailbox.h"

#include <gtest/gtest.h>

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
        const auto answer = mailbox.wait (0ms);
        EXPECT_EQ (answer.signalled, signalled);
        EXPECT_EQ (static_cast<int> (answer.code), code);
        EXPECT_EQ (answer.value, value);
    }
};

TEST_F (ResponseMailboxTest, aSignalIsTakenOnceAndTheReportStays)
{
    expect (false, 0, 0);
    store ({ 0xF6, 1 });
    expect (true, 0xF6, 1);
    expect (false, 0xF6, 1);

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
    store (Bytes (1025, 0xF7));
    expect (true, 0xF7, 0xF7);
    store ({ 0xF9 });
    expect (true, 0xF9, 0xF7);
    store ({});
    expect (true, 0xF9, 0xF7);
}

TEST_F (ResponseMailboxTest, anInterruptionIsNotHiddenByAnAnswer)
{
    store ({ 0xF9, 1 });
    mailbox.interrupt();
    expect (true, 0, 0);
    expect (false, 0, 0);

    mailbox.interrupt();
    store ({ 0xF9, 1 });
    expect (true, 0, 0);
    expect (false, 0xF9, 1);
    store ({ 0xFB, 2 });
    expect (true, 0xFB, 2);
}

TEST_F (ResponseMailboxTest, resetForgetsSignalsAlone)
{
    store ({ 0xF9, 1 });
    mailbox.reset();
    expect (false, 0xF9, 1);
    mailbox.interrupt();
    mailbox.reset();
    expect (false, 0, 0);
}

TEST_F (ResponseMailboxTest, aStopEndsEveryWaitForGood)
{
    store ({ 0xFC, 1 });
    mailbox.stop();

    for (int i = 0; i < 3; ++i)
        EXPECT_EQ (mailbox.wait (1h).code, ResponseCode::none);

    mailbox.reset();
    store ({ 0xFC, 1 });
    EXPECT_TRUE (mailbox.wait (1h).signalled);
    expect (true, 0, 0);
}

} // namespace
} // namespace wqv
