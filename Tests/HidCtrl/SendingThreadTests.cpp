// SPDX-License-Identifier: GPL-3.0-or-later
// Sending on a thread of its own while controllers come and go on the message thread.

#include "FakeHidService.h"
#include "HidCtrl.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <thread>

namespace wqv
{
namespace
{

constexpr std::array<std::uint8_t, 128> request { 0xF4 };

struct SendingThread : testing::Test
{
    FakeHidService service;
    NotingHandler handler;
    HidCtrl session { service };
};

TEST_F (SendingThread, aWriteInProgressKeepsItsOwnConnection)
{
    std::latch writing (1), letGo (1);
    std::vector<HidDeviceId> written;

    service.onSend = [&] (HidDeviceId device)
    {
        writing.count_down();
        letGo.wait();
        written.push_back (device);
    };

    ASSERT_TRUE (session.initialize (handler, 1));
    service.plugIn (FakeHidService::controller (1));
    std::thread worker ([&] { EXPECT_TRUE (session.setData (request)); });
    writing.wait();

    // The message thread does not wait for the write.
    service.unplug (1);
    service.plugIn (FakeHidService::controller (2));
    EXPECT_EQ (service.closed, std::vector<HidDeviceId> {});
    EXPECT_EQ (session.state(), HidCtrl::connected);

    letGo.count_down();
    worker.join();
    EXPECT_EQ (written, std::vector<HidDeviceId> { 1 });
    EXPECT_EQ (service.closed, std::vector<HidDeviceId> { 1 });
    EXPECT_EQ (handler.news(), "mrm");
}

TEST_F (SendingThread, aRequestNeverOverwritesARemoval)
{
    constexpr HidDeviceId rounds = 1000;
    std::atomic isOver { false };
    int undone = 0;

    ASSERT_TRUE (session.initialize (handler, 1));

    std::thread worker (
        [&]
        {
            while (! isOver)
                static_cast<void> (session.setData (request));
        });

    for (HidDeviceId id = 1; id <= rounds; ++id)
    {
        service.plugIn (FakeHidService::controller (id));

        while (session.state() != HidCtrl::requestSent)
            std::this_thread::yield();

        service.unplug (id);

        // A request that was on its way has time to go wrong.
        for (int i = 0; i < 50; ++i)
            undone += session.state() == HidCtrl::noDevice ? 0 : 1;
    }

    isOver = true;
    worker.join();

    EXPECT_EQ (undone, 0);
    EXPECT_EQ (handler.news().size(), 2 * rounds);
    EXPECT_FALSE (session.setData (request));
}

} // namespace
} // namespace wqv
