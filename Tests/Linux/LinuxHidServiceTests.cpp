// SPDX-License-Identifier: GPL-3.0-or-later
// The HID service of Linux on a made-up system: what every service must do, and what udev and hidraw really do to it.

#include "HidServiceContract.h"
#include "LinuxHidService.h"
#include "MessageLoop.h"
#include "MockController.h"
#include "Requests.h"
#include "TestBed.h"

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
#include <utility>
#include <vector>

namespace wqv
{
namespace
{

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

class LinuxWorld
{
public:
    static bool isPossible() { return TestBed::isPossible(); }
    static bool knows (HidService::OpenResult) { return true; }
    static bool canHold() { return true; }

    HidService& service() { return hidService; }
    void plugIn() { mock.plugIn(); }
    void unplug() { mock.unplug(); }
    void send (const std::vector<std::uint8_t>& report) { mock.send ({ &report, 1 }); }
    void takeNoReport() { replaceController ("hold@1"); }

    void refuse (HidService::OpenResult result)
    {
        obeyPermissions();
        mock.setMode (result == HidService::OpenResult::denied ? 0 : 0600);

        if (result == HidService::OpenResult::inUse)
            EXPECT_TRUE (mock.lockNode());
        else
            mock.unlockNode();
    }

    std::size_t taken()
    {
        replaceController ("");
        return takenBefore;
    }

    template <typename Condition>
    void runUntil (Condition&& isSo)
    {
        loop.runUntil (isSo);
    }

    void drain() { loop.drain(); }

private:
    /** What the old one did not take counts no more. */
    void replaceController (const char* faults)
    {
        takenBefore += mock.controller.requestCount() - std::exchange (held, std::string_view (faults).empty() ? 0 : 1);
        mock.controller = VirtualController (*parseFaultScript (faults));
    }

    TestBed bed;
    MockController mock { bed, UsbHid { .reportDescriptor = controllersReportDescriptor() } };
    MessageLoop loop;
    LinuxHidService hidService;
    std::size_t takenBefore = 0;
    std::size_t held = 0;
};

class LinuxHidServiceTests : public testing::Test, public HidService::Listener
{
protected:
    void SetUp() override
    {
        if (! TestBed::isPossible())
            GTEST_SKIP() << "the emulation of udev and hidraw, libumockdev-preload, is not installed";

        bed = std::make_unique<TestBed>();
    }

    /** Makes the service, and the controller that can be plugged in. */
    void start()
    {
        mock = std::make_unique<MockController> (*bed, UsbHid { .reportDescriptor = controllersReportDescriptor() });
        service = std::make_unique<LinuxHidService>();
        service->setListener (this);
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

    // In the order of life: the made-up system is the last to go.
    std::unique_ptr<TestBed> bed;
    std::unique_ptr<MockController> mock;
    MessageLoop loop;
    std::unique_ptr<LinuxHidService> service;

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

TEST_F (LinuxHidServiceTests, OpensANodeWithoutWaitingAndLeavesNoneOpen)
{
    start();
    const auto before = openTerminals();

    for (int times = 1; times <= 2; ++times)
    {
        mock->plugIn();
        loop.runUntil ([&] { return attached == times; });

        for (const auto terminal : openTerminals())
        {
            if (std::ranges::find (before, terminal) == before.end())
            {
                EXPECT_NE (fcntl (terminal, F_GETFL) & O_NONBLOCK, 0) << "reading could hold the message loop";
            }
        }

        EXPECT_GT (openTerminals().size(), before.size());
        mock->unplug();
        loop.runUntil ([&] { return removed == times; });
        connection.reset();
        EXPECT_EQ (openTerminals(), before);
    }
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
    loop.runUntil ([&] { return attached == 1; });

    const std::function<void()> waysToTell[] = { [&] { bed->tell (0, "change"); }, [&] { mock->touch(); } };

    // With nobody who tries, so that only an event of udev's, or the node's attributes, can tell.
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

    // Who has it open has it alone.
    EXPECT_FALSE (mock->lockNode());
    connection->stopInput();
    connection.reset();
    EXPECT_TRUE (mock->lockNode());
    EXPECT_EQ (removed, 0);
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
    EXPECT_FALSE (connection->send (std::vector<std::uint8_t> (2000)));
}

} // namespace

INSTANTIATE_TYPED_TEST_SUITE_P (Linux, HidServiceContract, LinuxWorld);

} // namespace wqv

int main (int argc, char* argv[])
{
    wqv::TestBed::enter (argv);
    testing::InitGoogleTest (&argc, argv);
    return RUN_ALL_TESTS();
}
