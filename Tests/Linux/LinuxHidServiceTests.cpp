// SPDX-License-Identifier: GPL-3.0-or-later
// The HID service of Linux on a made-up system: what udev and hidraw really do to it.

#include "LinuxHidService.h"
#include "MessageLoop.h"
#include "MockController.h"
#include "Requests.h"
#include "TestBed.h"
#include "Updater.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <linux/capability.h>
#include <memory>
#include <string>
#include <string_view>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace wqv
{
namespace
{

constexpr int tenTimes = 10;

/** This process's open terminals: a hidraw node that is left open is one of them. */
std::vector<int> openTerminals()
{
    std::vector<int> terminals;
    std::error_code error;

    for (const auto& entry : std::filesystem::directory_iterator ("/proc/self/fd"))
        if (read_symlink (entry.path(), error).string().starts_with ("/dev/pts/"))
            terminals.push_back (std::stoi (entry.path().filename()));

    return terminals;
}

/** From here on permissions count for this thread, even if it is root's. */
void obeyPermissions()
{
    __user_cap_header_struct header { .version = _LINUX_CAPABILITY_VERSION_3, .pid = 0 };
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets {};
    ASSERT_EQ (syscall (SYS_capget, &header, sets.data()), 0);
    sets[0].effective &= ~(1U << CAP_DAC_OVERRIDE);
    ASSERT_EQ (syscall (SYS_capset, &header, sets.data()), 0);
}

class LinuxHidServiceTests : public testing::Test, public HidService::Listener, public Updater::Listener
{
protected:
    void SetUp() override
    {
        if (! TestBed::isPossible())
            GTEST_SKIP() << "the emulation of udev and hidraw, libumockdev-preload, is not installed";

        bed = std::make_unique<TestBed>();
    }

    /** Makes the service, and the controller that can be plugged in. */
    void start (const char* faults = "")
    {
        updater.reset();
        service.reset();
        mock.reset();

        mock = std::make_unique<MockController> (
            *bed, UsbHid { .reportDescriptor = controllersReportDescriptor() }, *parseFaultScript (faults));
        service = std::make_unique<LinuxHidService>();
        service->setListener (this);
    }

    /** Makes the updater too, with the controller plugged in, and goes to the screen that offers an update. */
    void startUpdater (const char* faults)
    {
        start (faults);
        mock->plugIn();
        updater = std::make_unique<Updater> (
            Updater::Host { .hidService = *service,
                            .folder = std::filesystem::path (WQV_SAMPLE_PACKAGE).parent_path(),
                            .quit = [] {} },
            *this);
        updater->confirm();
        ASSERT_EQ (updater->status(), UPDATER_STATUS_READY);
    }

    /** The screen that shows follows the controller; where an update has ended it stays. */
    void comeAndGoTenTimes()
    {
        const auto statusAtFirst = updater->status();
        const auto hasEnded = statusAtFirst > UPDATER_STATUS_UPDATING;

        for (int times = 1; times <= tenTimes; ++times)
        {
            mock->unplug();
            loop.runUntil ([this] { return updater->deviceVersion() < 0; });
            loop.drain();
            EXPECT_EQ (updater->status(), hasEnded ? statusAtFirst : UPDATER_STATUS_NOT_CONNECTED);

            mock->plugIn();
            loop.runUntil ([this] { return updater->deviceVersion() > 0; });
            loop.drain();
            EXPECT_EQ (updater->status(), statusAtFirst);
        }
    }

    void runUntilUpdateEnds()
    {
        loop.runUntil ([this] { return updater->status() > UPDATER_STATUS_UPDATING; });
    }

    void open (HidDeviceId device)
    {
        auto opened = service->open (device, buffer);
        result = opened.result;
        connection = std::move (opened.connection);
    }

    void deviceAttached (const HidDevice& device) override
    {
        ++attached;
        last = device;

        if (opensAtOnce)
            open (device.id);
    }

    void deviceRemoved (HidDeviceId device) override
    {
        EXPECT_EQ (device, last.id);
        ++removed;
    }

    void reportReceived (HidDeviceId device, std::size_t length) override
    {
        EXPECT_EQ (device, last.id);
        const std::span report (buffer);
        received.emplace_back (report.begin(), report.begin() + static_cast<std::ptrdiff_t> (length));
    }

    void updaterChanged() override {}

    // In the order of life: the made-up system is the last to go.
    std::unique_ptr<TestBed> bed;
    std::unique_ptr<MockController> mock;
    MessageLoop loop;
    std::unique_ptr<LinuxHidService> service;
    std::unique_ptr<Updater> updater;

    bool opensAtOnce = true;
    int attached = 0;
    int removed = 0;
    HidDevice last;
    HidService::OpenResult result = HidService::OpenResult::gone;
    std::shared_ptr<HidConnection> connection;
    ReportBuffer buffer {};
    std::vector<std::vector<std::uint8_t>> received;
};

TEST_F (LinuxHidServiceTests, TellsOfUsbDevicesWhatTheirParentsSay)
{
    start();
    bed->add ({ .node = 0,
                .bus = 2,
                .ports = "1.10",
                .interfaceNumber = 0x0B,
                .versionNumber = 0x0210,
                .reportDescriptor = controllersReportDescriptor() });
    bed->add ({ .node = 1, .bus = 2, .ports = "1.4", .vendorId = 0xABCD, .productId = 0xEF01, .reportDescriptor = {} });
    bed->addOther (2);

    auto list = service->devices();
    ASSERT_EQ (list.size(), 2);
    std::ranges::sort (list, {}, &HidDevice::location);

    EXPECT_EQ (list[0].vendorId, 0xABCD);
    EXPECT_EQ (list[0].productId, 0xEF01);
    EXPECT_EQ (list[0].inputReportLength, 0);
    EXPECT_EQ (list[0].outputReportLength, 0);
    EXPECT_EQ (list[1].vendorId, kVendorId);
    EXPECT_EQ (list[1].productId, HidDeviceType[1]);
    EXPECT_EQ (list[1].versionNumber, 0x0210);
    EXPECT_EQ (list[1].interfaceNumber, 0x0B);
    EXPECT_EQ (list[1].inputReportLength, requestSize);
    EXPECT_EQ (list[1].outputReportLength, requestSize);
    EXPECT_EQ (list[1].location, 0x02'01'0A'00'00'00'00'00);

    // What the list tells is not told a second time.
    loop.drain();
    EXPECT_EQ (attached, 0);

    // That a device which nobody has opened goes away only udev tells.
    last = list[1];
    bed->remove (0);
    loop.runUntil ([&] { return removed == 1; });
    EXPECT_EQ (service->devices().size(), 1);
}

TEST_F (LinuxHidServiceTests, FollowsAControllerThatComesAndGoes)
{
    start();
    const auto before = openTerminals();

    for (int times = 1; times <= tenTimes; ++times)
    {
        const auto earlier = last.id;
        mock->plugIn();
        loop.runUntil ([&] { return attached == times; });
        EXPECT_EQ (result, HidService::OpenResult::ok);
        EXPECT_NE (last.id, earlier);
        EXPECT_EQ (service->devices().size(), 1);

        for (const auto terminal : openTerminals())
        {
            if (std::ranges::find (before, terminal) == before.end())
            {
                EXPECT_NE (fcntl (terminal, F_GETFL) & O_NONBLOCK, 0) << "reading could hold the message loop";
            }
        }

        mock->unplug();
        loop.runUntil ([&] { return removed == times; });
        EXPECT_TRUE (service->devices().empty());
        connection.reset();
        EXPECT_EQ (openTerminals(), before);
    }

    loop.drain();
    EXPECT_EQ (attached, tenTimes);
    EXPECT_EQ (removed, tenTimes);
}

/** The node ends before udev says that the device was removed. */
TEST_F (LinuxHidServiceTests, TellsARemovalOnceAndKeepsAnOldConnectionDead)
{
    start();
    mock->plugIn();
    loop.runUntil ([&] { return attached == 1; });
    const auto gone = last.id;
    const auto old = std::move (connection);

    mock->hangUp();
    loop.runUntil ([&] { return removed == 1; });
    EXPECT_TRUE (service->devices().empty());
    open (gone);
    EXPECT_EQ (result, HidService::OpenResult::gone);

    mock->remove();
    mock->plugIn();
    loop.runUntil ([&] { return attached == 2; });
    EXPECT_EQ (removed, 1);
    EXPECT_FALSE (old->send (finishRequest()));
    EXPECT_EQ (mock->controller.requestCount(), 0);
    EXPECT_TRUE (connection->send (finishRequest()));
    loop.runUntil ([&] { return received.size() == 1; });
}

TEST_F (LinuxHidServiceTests, OpensADeniedControllerWhenItMayLater)
{
    obeyPermissions();
    start();
    mock->plugIn();
    mock->setMode (0);
    loop.runUntil ([&] { return attached == 1; });
    EXPECT_EQ (result, HidService::OpenResult::denied);

    // Shortly after, of its own accord.
    mock->setMode (0600);
    loop.runUntil ([&] { return attached == 2; });
    EXPECT_EQ (result, HidService::OpenResult::ok);

    const std::function<void()> waysToTell[] = { [&] { bed->tell (0, "change"); }, [&] { mock->touch(); } };

    // Denied again, with nobody who tries, so that only an event of udev's, or the node's attributes, can tell.
    for (const auto& tell : waysToTell)
    {
        connection->stopInput();
        mock->setMode (0);
        open (last.id);
        EXPECT_EQ (result, HidService::OpenResult::denied);

        const auto before = attached;
        opensAtOnce = false;
        loop.runUntil ([&] { return attached == before + 1; });

        opensAtOnce = true;
        mock->setMode (0600);
        tell();
        loop.runUntil ([&] { return attached == before + 2; });
        EXPECT_EQ (result, HidService::OpenResult::ok);
    }

    EXPECT_EQ (removed, 0);
}

TEST_F (LinuxHidServiceTests, SharesAControllerWithNobody)
{
    start();
    mock->plugIn();
    EXPECT_TRUE (mock->lockNode());
    loop.runUntil ([&] { return attached == 1; });
    EXPECT_EQ (result, HidService::OpenResult::inUse);

    mock->unlockNode();
    loop.runUntil ([&] { return attached == 2; });
    EXPECT_EQ (result, HidService::OpenResult::ok);
    EXPECT_FALSE (mock->lockNode());

    connection->stopInput();
    connection.reset();
    EXPECT_TRUE (mock->lockNode());
}

TEST_F (LinuxHidServiceTests, HandsOverABurstOfReportsInOrder)
{
    std::vector<std::vector<std::uint8_t>> sent (40);

    for (std::size_t i = 0; i < sent.size(); ++i)
        sent[i].assign (requestSize - i, static_cast<std::uint8_t> (i));

    start();
    mock->plugIn();
    loop.runUntil ([&] { return attached == 1; });
    mock->send (sent);
    loop.runUntil ([&] { return received.size() >= sent.size(); });
    EXPECT_EQ (received, sent);
}

TEST_F (LinuxHidServiceTests, SaysThatTheSystemDoesNotTakeAReport)
{
    start ("hold@1");
    mock->plugIn();
    loop.runUntil ([&] { return attached == 1; });
    EXPECT_FALSE (connection->send (finishRequest()));
    EXPECT_TRUE (connection->send (finishRequest()));
    EXPECT_FALSE (connection->send (std::vector<std::uint8_t> (2000)));
    EXPECT_EQ (mock->controller.requestCount(), 2);
}

TEST_F (LinuxHidServiceTests, CarriesAWholeUpdate)
{
    startUpdater ("burst@20-30:5");
    comeAndGoTenTimes();
    const auto terminals = openTerminals();
    updater->confirm();
    runUntilUpdateEnds();
    EXPECT_EQ (updater->status(), UPDATER_STATUS_COMPLETE);
    EXPECT_EQ (mock->faultAgainst (WQV_SAMPLE_PACKAGE), "");

    comeAndGoTenTimes();
    EXPECT_EQ (openTerminals().size(), terminals.size());
}

TEST_F (LinuxHidServiceTests, FailsAnUpdateWhoseControllerGoesAway)
{
    const auto before = openTerminals();

    // It comes back, since the updater waits long for one that does not.
    for (const auto* const faults : { "unplug@40", "replug@40" })
    {
        SCOPED_TRACE (faults);
        startUpdater (faults);
        updater->confirm();

        if (std::string_view (faults).starts_with ("unplug"))
        {
            loop.runUntil ([this] { return service->devices().empty(); });
            mock->plugIn();
        }

        runUntilUpdateEnds();
        EXPECT_EQ (updater->status(), UPDATER_STATUS_ERROR);
        EXPECT_NE (mock->faultAgainst (WQV_SAMPLE_PACKAGE), "");

        mock->unplug();
        loop.runUntil ([this] { return service->devices().empty(); });
        EXPECT_EQ (updater->status(), UPDATER_STATUS_ERROR);
        EXPECT_EQ (openTerminals(), before);
    }
}

} // namespace
} // namespace wqv

int main (int argc, char* argv[])
{
    wqv::TestBed::enter (argv);
    testing::InitGoogleTest (&argc, argv);
    return RUN_ALL_TESTS();
}
