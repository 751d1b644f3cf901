// SPDX-License-Identifier: GPL-3.0-or-later
// What every HID service must do, as one suite of tests for all of them.

#pragma once

#include "DeviceIds.h"
#include "HidService.h"
#include "MessageLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <set>
#include <vector>

namespace wqv
{

/** What most worlds have: the message loop, and nothing that is refused, or taken only after five seconds. */
struct UsualWorld : MessageLoop
{
    static bool isPossible() { return true; }
    static bool knows (HidService::OpenResult /*result*/) { return false; }
    static bool canHold() { return false; }
    void refuse (HidService::OpenResult /*result*/) {}
    void takeNoReport() {}
};

/** The suite, over a World: a made-up system with one controller, made anew for each test. It has

        HidService& service();
        void plugIn();  void unplug();                   // the controller
        void send (std::vector<std::uint8_t> report);    // by the controller; 128 bytes: a shorter one is none to some systems
        void refuse (HidService::OpenResult);            // so ends every open from now on, if the system knows that; ok for none
        static bool knows (HidService::OpenResult);
        static bool canHold();
        void takeNoReport();                             // the next output report is not taken
        std::size_t taken();                             // whole output reports of 128 bytes that were taken so far
        template <typename C> void runUntil (C isSo);    // lets the system tell what has happened
        void drain();                                    // the same until nothing is left

    and unplugs what is plugged in at its end. */
template <typename World>
class HidServiceContract : public testing::Test, public HidService::Listener
{
protected:
    using Report = std::vector<std::uint8_t>;
    using OpenResult = HidService::OpenResult;

    void SetUp() override
    {
        if (! World::isPossible())
            GTEST_SKIP() << "this system cannot be made up here";

        made = std::make_unique<World>();
        made->service().setListener (this);
    }

    void TearDown() override
    {
        if (connection != nullptr)
            connection->stopInput();
    }

    void plugInAndOpen()
    {
        const auto before = attached.size();
        made->plugIn();
        made->runUntil ([&] { return attached.size() == before + 1; });
        EXPECT_EQ (open (attached.back().id), OpenResult::ok);
    }

    void unplug()
    {
        const auto before = removed.size();
        made->unplug();
        made->runUntil ([&] { return removed.size() == before + 1; });
    }

    /** The controller, if it is there: a real system has other devices too. */
    std::vector<HidDevice> listed()
    {
        auto devices = made->service().devices();
        std::erase_if (devices, [] (const HidDevice& device) { return device.vendorId != kVendorId; });
        return devices;
    }

    OpenResult open (HidDeviceId device)
    {
        if (connection != nullptr)
            connection->stopInput();

        auto opened = made->service().open (device, buffer);
        EXPECT_EQ (opened.connection != nullptr, opened.result == OpenResult::ok);
        connection = std::move (opened.connection);
        return opened.result;
    }

    void deviceAttached (const HidDevice& device) override
    {
        if (device.vendorId == kVendorId)
            attached.push_back (device);
        else
            others.insert (device.id);
    }

    void deviceRemoved (HidDeviceId device) override
    {
        if (others.contains (device))
            return;

        removed.push_back (device);

        for (const auto& other : listed())
            EXPECT_NE (other.id, device);
    }

    void reportReceived (HidDeviceId device, std::size_t length) override
    {
        EXPECT_EQ (device, attached.back().id);
        received.emplace_back (buffer.data(), buffer.data() + std::min (length, buffer.size()));
    }

    std::unique_ptr<World> made;
    std::vector<HidDevice> attached; ///< as told, in order; without those that are not the controller
    std::set<HidDeviceId> others;
    std::vector<HidDeviceId> removed;
    std::vector<Report> received;
    ReportBuffer buffer {};
    std::shared_ptr<HidConnection> connection;
};

TYPED_TEST_SUITE_P (HidServiceContract);

TYPED_TEST_P (HidServiceContract, tellsWhatComesAndGoesOnceAndByAnIdOfItsOwn)
{
    auto& world = *this->made;
    std::set<HidDeviceId> ids;

    for (std::size_t times = 1; times <= 5; ++times)
    {
        world.plugIn();
        world.runUntil ([&] { return this->attached.size() == times; });
        const auto id = this->attached.back().id;
        EXPECT_TRUE (id != 0 && ids.insert (id).second) << "an id that was used before";
        ASSERT_EQ (this->listed().size(), 1u);
        EXPECT_EQ (this->listed().front().id, id);

        // An open one, and one that is not.
        if (times % 2 == 0)
        {
            EXPECT_EQ (this->open (id), HidService::OpenResult::ok);
        }

        this->unplug();
        EXPECT_EQ (this->removed.back(), id);
        EXPECT_TRUE (this->listed().empty());
        EXPECT_EQ (this->open (id), HidService::OpenResult::gone);
    }

    world.drain();
    EXPECT_EQ (this->attached.size(), 5u);
    EXPECT_EQ (this->removed.size(), 5u);
}

TYPED_TEST_P (HidServiceContract, tellsWhatItHasListedNoMore)
{
    auto& world = *this->made;
    world.plugIn();
    const auto toldAtOnce = this->attached.size();
    const auto list = this->listed();
    world.drain();
    ASSERT_EQ (list.size(), 1u);
    EXPECT_EQ (list.front().outputReportLength, 128u);
    EXPECT_EQ (this->attached.size(), toldAtOnce);
}

TYPED_TEST_P (HidServiceContract, writesEachReportIntoTheBufferUntilInputIsStopped)
{
    auto& world = *this->made;
    this->plugInAndOpen();

    const auto report = [] (std::uint8_t byte) { return std::vector<std::uint8_t> (128, byte); };
    const std::vector<std::vector<std::uint8_t>> sent { report (1), report (7), report (2) };

    for (const auto& bytes : sent)
        world.send (bytes);

    world.runUntil ([&] { return this->received.size() >= sent.size(); });
    EXPECT_EQ (this->received, sent);

    // What is under way does not arrive, nor what comes afterwards.
    world.send (report (4));
    this->connection->stopInput();
    this->connection->stopInput();
    world.send (report (5));
    world.drain();
    EXPECT_EQ (this->received, sent);
    EXPECT_EQ (this->buffer[0], 2);
    EXPECT_TRUE (this->connection->send (report (1)));
    this->unplug();
}

TYPED_TEST_P (HidServiceContract, saysWhyADeviceIsNotOpened)
{
    auto& world = *this->made;
    this->plugInAndOpen();
    const auto id = this->attached.back().id;

    for (const auto refusal : { HidService::OpenResult::denied, HidService::OpenResult::inUse })
    {
        if (! TypeParam::knows (refusal))
            continue;

        this->connection->stopInput();
        this->connection.reset();
        world.refuse (refusal);
        EXPECT_EQ (this->open (id), refusal);
        world.refuse (HidService::OpenResult::ok);

        // Of its own accord it says when it can be opened.
        const auto before = this->attached.size();
        world.runUntil ([&] { return this->attached.size() > before; });
        EXPECT_EQ (this->attached.back().id, id);
        EXPECT_EQ (this->open (id), HidService::OpenResult::ok);
    }

    EXPECT_EQ (this->open (id + 1), HidService::OpenResult::gone);
    EXPECT_TRUE (this->removed.empty());
}

TYPED_TEST_P (HidServiceContract, sendsAWholeReportOrSaysNo)
{
    auto& world = *this->made;
    const std::vector<std::uint8_t> report (128, 0xF2);
    this->plugInAndOpen();
    EXPECT_TRUE (this->connection->send (report));

    if (TypeParam::canHold())
    {
        world.takeNoReport();
        EXPECT_FALSE (this->connection->send (report));
    }

    EXPECT_TRUE (this->connection->send (report));

    // Nor does an old connection reach the controller that has come back.
    const auto old = this->connection;
    old->stopInput();
    this->unplug();
    EXPECT_FALSE (old->send (report));
    this->plugInAndOpen();
    EXPECT_FALSE (old->send (report));
    EXPECT_TRUE (this->connection->send (report));
    EXPECT_EQ (world.taken(), 3u);
}

REGISTER_TYPED_TEST_SUITE_P (HidServiceContract,
                             tellsWhatComesAndGoesOnceAndByAnIdOfItsOwn,
                             tellsWhatItHasListedNoMore,
                             writesEachReportIntoTheBufferUntilInputIsStopped,
                             saysWhyADeviceIsNotOpened,
                             sendsAWholeReportOrSaysNo);

} // namespace wqv
