// SPDX-License-Identifier: GPL-3.0-or-later
// Reports over a pair of sockets in a hidraw node's place: reading, writing, hang-up, closing.

#include "HidrawConnection.h"
#include "MessageLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <memory>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace wqv
{
namespace
{

using Bytes = std::vector<std::uint8_t>;

class HidrawConnectionTests : public testing::Test
{
protected:
    HidrawConnectionTests()
    {
        std::array<int, 2> ends { -1, -1 };
        EXPECT_EQ (socketpair (AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()), 0);
        device = ends[0];
        node = ends[1];

        // As the service opens a node. The device's end may be full, but then a test fails and does not wait for ever.
        for (const auto end : ends)
            EXPECT_EQ (fcntl (end, F_SETFL, O_NONBLOCK), 0);

        connection = std::make_shared<HidrawConnection> (node);
        connection->startInput (
            buffer,
            [this] (std::size_t length)
            {
                received.emplace_back (buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t> (length));

                if (received.size() == stopsAfter)
                    connection->stopInput();
            },
            [this] { ++hangUps; });
    }

    ~HidrawConnectionTests() override { hangUp(); }

    void hangUp()
    {
        if (const auto end = std::exchange (device, -1); end >= 0)
            close (end);
    }

    /** Sends reports of 1, 2, 3 ... bytes, each with other bytes. */
    std::vector<Bytes> burst (std::size_t count) const
    {
        std::vector<Bytes> reports;

        for (std::size_t i = 1; i <= count; ++i)
        {
            reports.emplace_back (i, static_cast<std::uint8_t> (i));
            EXPECT_EQ (write (device, reports.back().data(), i), i);
        }

        return reports;
    }

    /** What the device gets next; nothing if there is nothing. */
    Bytes nextAtDevice() const
    {
        Bytes report (reportBufferSize * 2);
        const auto length = read (device, report.data(), report.size());
        report.resize (static_cast<std::size_t> (std::max<ssize_t> (length, 0)));
        return report;
    }

    int device = -1;
    int node = -1;
    const MessageLoop loop;
    ReportBuffer buffer {};
    std::vector<Bytes> received;
    std::size_t stopsAfter = 0;
    int hangUps = 0;
    std::shared_ptr<HidrawConnection> connection;
};

TEST_F (HidrawConnectionTests, ReadsABurstInOrderThenTellsTheHangUpOnce)
{
    auto sent = burst (40);
    connection->readPending();
    EXPECT_EQ (received, sent);
    const Bytes tooLong (reportBufferSize + 1, 0x5A);
    EXPECT_EQ (write (device, tooLong.data(), tooLong.size()), tooLong.size());
    sent.emplace_back (reportBufferSize, 0x5A);
    hangUp();

    loop.runUntil ([this] { return hangUps > 0; });
    loop.drain();
    EXPECT_EQ (received, sent);
    EXPECT_EQ (hangUps, 1);
}

TEST_F (HidrawConnectionTests, TellsNothingAfterTheStopNotEvenInABurst)
{
    stopsAfter = 2;
    burst (3);
    loop.runUntil ([this] { return received.size() >= stopsAfter; });
    hangUp();
    loop.drain();
    EXPECT_EQ (received.size(), stopsAfter);
    EXPECT_EQ (hangUps, 0);
}

TEST_F (HidrawConnectionTests, SaysWhetherTheSystemTookAReport)
{
    const Bytes report (128, 0xF1);
    Bytes withId (1 + report.size(), 0xF1);
    withId.front() = 0;

    EXPECT_TRUE (connection->send (report));
    EXPECT_EQ (nextAtDevice(), withId);
    EXPECT_FALSE (connection->send (Bytes (2000)));
    EXPECT_EQ (nextAtDevice(), Bytes());

    // A node that takes nothing more.
    while (write (node, withId.data(), withId.size()) > 0)
    {
    }

    EXPECT_FALSE (connection->send (report));
}

TEST_F (HidrawConnectionTests, IsClosedByItsLastOwner)
{
    auto writer = connection;
    connection->stopInput();
    connection.reset();
    EXPECT_TRUE (writer->send (Bytes (1)));
    EXPECT_EQ (nextAtDevice(), Bytes (2));

    writer.reset();
    std::uint8_t byte = 0;
    EXPECT_EQ (read (device, &byte, 1), 0) << "still open";
}

} // namespace
} // namespace wqv
