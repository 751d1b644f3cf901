// SPDX-License-Identifier: GPL-3.0-or-later
// The session: every step of its state, and sending on a thread of its own while controllers come and go.

#include "FakeHidService.h"
#include "HidCtrl.h"
#include "NotingHandler.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>

namespace wqv
{
namespace
{

struct HidCtrlTest : testing::Test
{
    FakeHidService service;
    NotingHandler handler;
    HidCtrl session { service };
    std::vector<HidDeviceId> sent;
    std::array<std::uint8_t, 128> request {};

    HidCtrlTest()
    {
        service.onSend = [this] (HidDeviceId device) { sent.push_back (device); };
    }

    void plugIn (HidDeviceId id, std::int32_t version)
    {
        auto device = FakeHidService::controller (id, id);
        device.versionNumber = version;
        service.plugIn (device);
    }

    /** State and version of the session, and what its handler heard since the last time. */
    void expect (std::int32_t state, std::int32_t version, const std::string& heard)
    {
        EXPECT_EQ (session.state(), state);
        EXPECT_EQ (session.version(), version);
        EXPECT_EQ (handler.news(), heard);
    }
};

TEST_F (HidCtrlTest, beforeTheFirstRequestAnotherControllerReplacesItSilently)
{
    ASSERT_TRUE (session.initialize (handler, 1));
    expect (HidCtrl::noDevice, 0, "");
    EXPECT_FALSE (session.setData (request));

    plugIn (1, 0x1234);
    expect (HidCtrl::connected, 1234, "m");
    plugIn (2, 0xFFFF); // of digits that are none
    service.deliver ({ 1, 2, 3 });
    expect (HidCtrl::connected, 1234, "i");

    service.unplug (1);
    expect (HidCtrl::connected, 16665, "m");
    EXPECT_TRUE (session.inputReport().empty());
    service.deliver ({ 4 });
    expect (HidCtrl::connected, 16665, "i");
    EXPECT_EQ (sent, std::vector<HidDeviceId> {});
}

TEST_F (HidCtrlTest, nothingIsSentAfterARemoval)
{
    plugIn (1, 0x0105);
    plugIn (2, 0x0210);
    ASSERT_TRUE (session.initialize (handler, 1));
    EXPECT_TRUE (session.setData (request));
    expect (HidCtrl::requestSent, 105, "");

    service.unplug (1);
    expect (HidCtrl::noDevice, 0, "r");

    // Even when the transport is made to look for another one.
    EXPECT_TRUE (session.deviceMatching());
    EXPECT_FALSE (session.setData (request));
    EXPECT_EQ (sent, std::vector<HidDeviceId> { 1 });
    service.unplug (2);
    expect (HidCtrl::noDevice, 0, "r");
}

TEST_F (HidCtrlTest, aShortReportLeavesTheRestOfTheLastOne)
{
    using Bytes = std::vector<std::uint8_t>;

    plugIn (1, 0x0105);
    ASSERT_TRUE (session.initialize (handler, 1));
    service.deliver ({ 1, 2, 3, 4 });
    service.deliver ({ 9 });

    const auto report = session.inputReport();
    ASSERT_EQ (report.size(), 1u);
    EXPECT_EQ (Bytes (report.data(), report.data() + 5), (Bytes { 9, 2, 3, 4, 0 }));

    // Who asks for less gets no more.
    Bytes some (4, 7);
    EXPECT_EQ (session.deviceInput (std::span (some).first (2)), 1u);
    service.deliver ({ 1, 2, 3, 4 });
    EXPECT_EQ (session.deviceInput (std::span (some).first (2)), 2u);
    EXPECT_EQ (some, (Bytes { 1, 2, 7, 7 }));

    // No length is believed.
    service.listener->reportReceived (1, std::size_t { 1 } << 32);
    EXPECT_EQ (session.inputReport().size(), 1024u);
}

TEST_F (HidCtrlTest, nothingIsHeardAfterTheEnd)
{
    plugIn (1, 0x0105);
    ASSERT_TRUE (session.initialize (handler, 1));

    // A second session is refused, and its end is not that of the first.
    EXPECT_FALSE (HidCtrl (service).initialize (handler, 1));
    service.deliver ({ 1 });
    expect (HidCtrl::connected, 105, "i");

    session.finalize();
    session.finalize();
    EXPECT_EQ (service.listener, nullptr);
    EXPECT_EQ (service.reportBuffer, nullptr);
    EXPECT_EQ (handler.news(), "");
}

TEST_F (HidCtrlTest, aWriteInProgressKeepsItsOwnConnection)
{
    // Meanwhile the device goes and another one comes: nothing waits for the write, which would never end here.
    service.onSend = [this] (HidDeviceId device)
    {
        service.unplug (1);
        service.plugIn (FakeHidService::controller (2));
        EXPECT_EQ (service.closed, std::vector<HidDeviceId> {});
        EXPECT_EQ (session.state(), HidCtrl::connected);
        sent.push_back (device);
    };

    ASSERT_TRUE (session.initialize (handler, 1));
    service.plugIn (FakeHidService::controller (1));
    EXPECT_TRUE (session.setData (request));
    EXPECT_EQ (sent, std::vector<HidDeviceId> { 1 });
    EXPECT_EQ (service.closed, std::vector<HidDeviceId> { 1 });
    EXPECT_EQ (handler.news(), "mrm");
}

TEST_F (HidCtrlTest, aRequestNeverOverwritesARemoval)
{
    constexpr HidDeviceId rounds = 50000;
    std::atomic<HidDeviceId> begun { 0 }, ended { 0 };

    // Each round meets at another instant.
    const auto linger = [this] (HidDeviceId times)
    {
        while (times-- > 0)
            static_cast<void> (session.state());
    };

    ASSERT_TRUE (session.initialize (handler, 1));
    service.onSend = [] (auto) {};

    std::thread worker (
        [&]
        {
            for (HidDeviceId id = 1; id <= rounds; ended = id++)
            {
                while (begun < id)
                    std::this_thread::yield();

                linger (id % 251);
                static_cast<void> (session.setData (request));
            }
        });

    int undone = 0;

    for (HidDeviceId id = 1; id <= rounds; ++id)
    {
        service.plugIn (FakeHidService::controller (id));
        begun = id;
        linger (id % 127);
        service.unplug (id);

        while (ended < id)
            std::this_thread::yield();

        undone += session.state() == HidCtrl::noDevice ? 0 : 1;
    }

    worker.join();
    EXPECT_EQ (undone, 0);
    EXPECT_EQ (handler.news().size(), 2 * rounds);
}

} // namespace
} // namespace wqv
