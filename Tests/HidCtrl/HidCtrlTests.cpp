// SPDX-License-Identifier: GPL-3.0-or-later
// The session: every step of its state, over simulated devices that come and go.

#include "FakeHidService.h"
#include "HidCtrl.h"
#include "SimulatedHidService.h"

#include <gtest/gtest.h>

namespace wqv
{
namespace
{

using Bytes = std::vector<std::uint8_t>;

struct HidCtrlTest : testing::Test
{
    juce::ScopedJuceInitialiser_GUI juceIsNeededByTheService;
    SimulatedHidService service;
    NotingHandler handler;
    HidCtrl session { service };
    Bytes request = Bytes (requestSize);

    HidDeviceId plugIn (std::uint64_t location, std::int32_t version, VirtualController* controller = nullptr)
    {
        auto device = FakeHidService::controller (0, location);
        device.versionNumber = version;
        return service.plugIn (device, controller);
    }

    /** State and version of the session, and what its handler heard since the last time. */
    void expect (std::int32_t state, std::int32_t version, const std::string& heard)
    {
        EXPECT_EQ (session.state(), state);
        EXPECT_EQ (session.version(), version);
        EXPECT_EQ (handler.news(), heard);
    }
};

TEST_F (HidCtrlTest, aControllerComesLater)
{
    VirtualController controller;

    ASSERT_TRUE (session.initialize (handler, 1));
    expect (HidCtrl::noDevice, 0, "");
    EXPECT_FALSE (session.setData (request));

    const auto device = plugIn (1, 0, &controller);
    expect (HidCtrl::connected, 100, "m");
    EXPECT_TRUE (session.deviceOutput (enterUpdateModeRequest()));
    expect (HidCtrl::connected, 100, "");

    EXPECT_TRUE (session.setData (enterUpdateModeRequest()));
    expect (HidCtrl::requestSent, 100, "");

    service.unplug (device);
    expect (HidCtrl::noDevice, 0, "r");
    EXPECT_FALSE (session.setData (request));
    EXPECT_EQ (controller.requestCount(), 2u);
}

TEST_F (HidCtrlTest, beforeTheFirstRequestAnotherControllerReplacesItSilently)
{
    const auto first = plugIn (1, 0x0105);
    ASSERT_TRUE (session.initialize (handler, 1));
    expect (HidCtrl::connected, 105, "");
    const auto second = plugIn (2, 0x0210);

    service.deliver (first, Bytes { 1, 2, 3 });
    expect (HidCtrl::connected, 105, "i");

    service.unplug (first);
    expect (HidCtrl::connected, 210, "m");
    EXPECT_TRUE (session.inputReport().empty());

    service.deliver (second, Bytes { 4 });
    expect (HidCtrl::connected, 210, "i");
}

TEST_F (HidCtrlTest, afterARequestARemovalEndsTheSession)
{
    VirtualController controller;
    const auto first = plugIn (1, 0x0105);
    ASSERT_TRUE (session.initialize (handler, 1));
    const auto second = plugIn (2, 0x0210, &controller);

    // That the controller did not take the request changes nothing.
    EXPECT_FALSE (session.setData (request));
    expect (HidCtrl::requestSent, 105, "");

    service.unplug (first);
    expect (HidCtrl::noDevice, 0, "r");
    service.deliver (second, Bytes { 4 });
    expect (HidCtrl::noDevice, 0, "");

    // Even when the transport is made to look for another one.
    EXPECT_TRUE (session.deviceMatching());
    EXPECT_FALSE (session.setData (request));
    EXPECT_EQ (controller.requestCount(), 0u);
    service.unplug (second);
    expect (HidCtrl::noDevice, 0, "r");
}

TEST_F (HidCtrlTest, aShortReportLeavesTheRestOfTheLastOne)
{
    const auto device = plugIn (1, 0x0105);
    ASSERT_TRUE (session.initialize (handler, 1));

    service.deliver (device, Bytes { 1, 2, 3, 4 });
    service.deliver (device, Bytes { 9 });
    expect (HidCtrl::connected, 105, "ii");

    const auto report = session.inputReport();
    ASSERT_EQ (report.size(), 1u);
    EXPECT_EQ (Bytes (report.data(), report.data() + 5), (Bytes { 9, 2, 3, 4, 0 }));

    Bytes copy (8, 0x55);
    EXPECT_EQ (session.deviceInput (copy), 1u);
    EXPECT_EQ (copy, (Bytes { 9, 0, 0, 0, 0, 0, 0, 0 }));

    service.deliver (device, Bytes (4096, 7));
    EXPECT_EQ (session.inputReport().size(), 1024u);
}

TEST_F (HidCtrlTest, nothingIsHeardAfterTheEnd)
{
    const auto device = plugIn (1, 0x0105);
    ASSERT_TRUE (session.initialize (handler, 1));

    // A second session is refused, and its end is not that of the first.
    EXPECT_FALSE (HidCtrl (service).initialize (handler, 1));
    service.deliver (device, request);
    expect (HidCtrl::connected, 105, "i");

    session.finalize();
    session.finalize();
    service.deliver (device, request);
    service.unplug (device);
    plugIn (1, 0x0105);
    EXPECT_EQ (handler.news(), "");
}

} // namespace
} // namespace wqv
