// SPDX-License-Identifier: GPL-3.0-or-later
// The transport: which device it takes, and what it lets through.

#include "FakeHidService.h"
#include "HidUtil.h"
#include "NotingHandler.h"

#include <gtest/gtest.h>

#include <array>

namespace wqv
{
namespace
{

struct HidUtilTest : testing::Test
{
    FakeHidService service;
    NotingHandler handler;
    HidUtil transport { service };
    std::array<std::uint8_t, 128> request {};

    using Ids = std::vector<HidDeviceId>;
};

TEST_F (HidUtilTest, takesTheFirstLocationThatFits)
{
    // Strangers at the first two locations, a controller at 4, and another one behind it.
    for (const auto location : { 9u, 2u, 1u, 4u })
        service.listed.push_back (FakeHidService::controller (service.listed.size() + 1, location));

    service.listed[1].productId ^= 2;
    service.listed[2].vendorId ^= 1;
    service.listed[3].outputReportLength = 0; // fits least, but the place counts first

    ASSERT_TRUE (transport.initialize (handler, 1));
    EXPECT_TRUE (transport.deviceMatching());
    EXPECT_TRUE (transport.deviceMatching());
    EXPECT_EQ (service.opened, Ids { 4 });

    // While one is held nothing else matters: no attach, no removal and no report of another.
    service.listener->deviceAttached (FakeHidService::controller (7, 0));
    service.listener->reportReceived (1, 128);
    service.listener->deviceRemoved (1);
    EXPECT_EQ (handler.news(), "");
    EXPECT_EQ (service.opened, Ids { 4 });
}

TEST_F (HidUtilTest, takesTheInterfaceThatHoldsTheConversation)
{
    // Interface 3 has no output report, 2 a larger one, 1 nothing to answer with; 4 and 5 fit.
    for (const auto id : { 5u, 4u, 3u, 2u, 1u })
    {
        service.listed.push_back (FakeHidService::controller (id));
        service.listed.back().interfaceNumber = static_cast<std::int32_t> (id);
    }

    service.listed[2].outputReportLength = 0;
    service.listed[3].outputReportLength = 129;
    service.listed[4].inputReportLength = 0;

    ASSERT_TRUE (transport.initialize (handler, 1));
    EXPECT_TRUE (transport.deviceMatching());
    EXPECT_EQ (service.opened, Ids { 4 });

    // One by one, the better ones closed at first: each better one is taken as soon as it opens, while nothing was sent.
    service.listener->deviceRemoved (4);
    service.refusals[4] = HidService::OpenResult::denied;

    for (const auto place : { 3u, 2u, 4u, 1u })
        service.listener->deviceAttached (service.listed[place]);

    EXPECT_EQ (handler.news(), "rmm");
    service.refusals.clear();
    service.listener->deviceAttached (service.listed[1]);
    service.listener->deviceAttached (service.listed[0]);
    EXPECT_EQ (service.opened, (Ids { 4, 2, 1, 4, 4 }));
    EXPECT_EQ (service.closed, (Ids { 4, 2, 1 }));
    EXPECT_EQ (handler.news(), "m");

    // No request goes where it does not fit, and once one was sent only an interface that lacks less takes over.
    service.listener->deviceRemoved (4);
    service.listener->deviceAttached (service.listed[3]);
    EXPECT_FALSE (transport.deviceOutput (request));
    service.listener->deviceRemoved (2);

    for (const auto& [place, holder] : { std::pair (2u, 3u), { 3u, 3u }, { 4u, 1u }, { 0u, 5u }, { 1u, 5u } })
    {
        service.listener->deviceAttached (service.listed[place]);
        EXPECT_TRUE (transport.deviceOutput (request));
        EXPECT_EQ (service.opened.back(), holder);
    }

    // With the next controller it begins anew.
    service.listener->deviceRemoved (5);
    service.listener->deviceAttached (service.listed[0]);
    service.listener->deviceAttached (service.listed[1]);
    EXPECT_EQ (service.opened.back(), 4u);

    // What is sent while another one is being opened counts too.
    service.listener->deviceRemoved (4);
    service.listener->deviceAttached (service.listed[0]);
    service.onOpen = [this] { EXPECT_TRUE (transport.deviceOutput (request)); };
    service.listener->deviceAttached (service.listed[1]);
    EXPECT_EQ (service.closed.back(), 4u);
}

TEST_F (HidUtilTest, withoutPackageNothingIsEverOpened)
{
    auto productZero = FakeHidService::controller (2);
    productZero.productId = 0;
    service.listed = { FakeHidService::controller (1), productZero };

    ASSERT_TRUE (transport.initialize (handler, 0));
    EXPECT_FALSE (transport.deviceMatching());
    service.listener->deviceAttached (FakeHidService::controller (3));
    service.listener->deviceAttached (productZero);
    EXPECT_EQ (service.opened, Ids {});
}

TEST_F (HidUtilTest, aDeviceThatCannotBeOpenedIsNotTaken)
{
    service.listed = { FakeHidService::controller (1, 1), FakeHidService::controller (2, 2) };
    service.refusals = { { 1, HidService::OpenResult::denied }, { 2, HidService::OpenResult::gone } };

    ASSERT_TRUE (transport.initialize (handler, 1));
    EXPECT_FALSE (transport.deviceMatching());
    EXPECT_EQ (service.opened, (Ids { 1, 2 }));
    EXPECT_FALSE (transport.deviceOutput (request));

    // Allowed now, and so told of once more.
    service.refusals.clear();
    service.listener->deviceAttached (service.listed[0]);
    EXPECT_EQ (handler.news(), "m");
    EXPECT_TRUE (transport.deviceOutput (request));
}

TEST_F (HidUtilTest, aControllerThatSomebodyElseHoldsIsNotTaken)
{
    service.listed = { FakeHidService::controller (1), FakeHidService::controller (2) };
    service.listed[0].outputReportLength = 0;
    service.refusals[2] = HidService::OpenResult::inUse;

    // Not by another interface either.
    ASSERT_TRUE (transport.initialize (handler, 1));
    EXPECT_FALSE (transport.deviceMatching());
    service.listener->deviceAttached (service.listed[0]);
    EXPECT_EQ (service.opened, Ids { 2 });

    // But another controller is.
    service.listener->deviceAttached (FakeHidService::controller (3, 9));
    service.listener->deviceRemoved (3);

    // Nor is it kept when its better interface turns out to be held, only until that is free.
    service.listener->deviceRemoved (2);
    service.listener->deviceAttached (service.listed[0]);
    service.listener->deviceAttached (service.listed[1]);
    EXPECT_EQ (handler.news(), "mrmr");
    EXPECT_EQ (service.closed, (Ids { 3, 1 }));
    service.refusals.clear();
    service.listener->deviceAttached (service.listed[1]);
    EXPECT_EQ (handler.news(), "m");
}

TEST_F (HidUtilTest, aRemovedDeviceIsNotTakenAgainThoughItIsStillListed)
{
    service.listed = { FakeHidService::controller (1, 1) };
    ASSERT_TRUE (transport.initialize (handler, 1));
    ASSERT_TRUE (transport.deviceMatching());

    service.listener->deviceRemoved (1);
    service.listener->deviceRemoved (1);
    EXPECT_EQ (handler.news(), "r");
    EXPECT_EQ (transport.deviceVersion(), 0);
    EXPECT_EQ (service.closed, Ids { 1 });
    EXPECT_EQ (service.reportBuffer, nullptr);

    // What a list shows is not told of, so none is taken before somebody searches it.
    EXPECT_EQ (service.listings, 1);
    EXPECT_FALSE (transport.deviceMatching());

    // The search sees what has come since the start.
    service.listener->deviceAttached (FakeHidService::controller (2));
    service.listed = { FakeHidService::controller (2, 1), FakeHidService::controller (3, 2) };
    service.listener->deviceRemoved (2);
    EXPECT_TRUE (transport.deviceMatching());
    EXPECT_EQ (service.opened, (Ids { 1, 2, 3 }));
}

} // namespace
} // namespace wqv
