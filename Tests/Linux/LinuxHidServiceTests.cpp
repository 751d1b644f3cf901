// SPDX-License-Identifier: GPL-3.0-or-later
// The HID service of Linux on a real kernel, by what every service must do: root, udev and a free USB port of dummy_hcd's are
// needed, all of which script/try-kernel has.

#include "HidServiceContract.h"

#include "DeviceIds.h"
#include "HidUtil.h"
#include "HidgNode.h"
#include "LinuxHidService.h"
#include "MessageLoop.h"
#include "UsbGadget.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <string>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace wqv
{
namespace
{

namespace fs = std::filesystem;

class LinuxWorld
{
public:
    LinuxWorld() { EXPECT_EQ (gadget.create(), ""); }
    ~LinuxWorld() { unplug(); }

    LinuxWorld (const LinuxWorld&) = delete;
    LinuxWorld& operator= (const LinuxWorld&) = delete;

    static bool isPossible() { return fs::exists ("/sys/class/udc/dummy_udc.0") && geteuid() == 0; }
    static bool knows (HidService::OpenResult result)
    {
        return result != HidService::OpenResult::denied;
    }                                       // root never is
    static bool canHold() { return false; } // the kernel does, but for five seconds

    HidService& service() { return hidService; }

    void plugIn()
    {
        EXPECT_EQ (gadget.plugIn (0x0105), "");
        EXPECT_TRUE (endpoint.open ("/dev/" + gadget.nodeOf (0)));

        while (node().empty())
            std::this_thread::yield();

        settle();
    }

    void unplug()
    {
        countReports();
        endpoint.close();
        gadget.unplug();
    }

    void send (const std::vector<std::uint8_t>& report)
    {
        EXPECT_TRUE (endpoint.write (report));

        // Until the host has fetched it.
        pollfd writable { .fd = endpoint.handle(), .events = POLLOUT, .revents = 0 };
        EXPECT_EQ (poll (&writable, 1, -1), 1);
    }

    void refuse (HidService::OpenResult result)
    {
        if (result == HidService::OpenResult::inUse)
        {
            holder = open (node().c_str(), O_RDWR | O_CLOEXEC);
            EXPECT_EQ (flock (holder, LOCK_EX | LOCK_NB), 0);
        }
        else
        {
            close (holder);
        }
    }

    void takeNoReport() {}

    std::size_t taken()
    {
        countReports();
        return reports;
    }

    template <typename Condition>
    void runUntil (Condition&& isSo)
    {
        loop.runUntil (isSo);
    }

    void drain()
    {
        settle();
        loop.drain();
    }

private:
    /** Empty if there is none. */
    static std::string node()
    {
        for (const auto& entry : fs::directory_iterator ("/dev"))
            if (entry.path().filename().string().starts_with ("hidraw"))
                return entry.path().string();

        return {};
    }

    static void settle() { EXPECT_EQ (std::system ("udevadm settle --timeout 20"), 0); }

    /** They are lost when it is unplugged. */
    void countReports()
    {
        while (const auto report = endpoint.read())
            reports += report->size() == 128 ? 1U : 0U;
    }

    MessageLoop loop;
    UsbGadget gadget { "/sys/kernel/config/usb_gadget",
                       "dummy_udc.0",
                       { .vendorId = static_cast<std::uint16_t> (kVendorId),
                         .productId = static_cast<std::uint16_t> (HidDeviceType[1]),
                         .reportLengths = { 128 } } };
    HidgNode endpoint;
    LinuxHidService hidService;
    std::size_t reports = 0;
    int holder = -1;
};

} // namespace

INSTANTIATE_TYPED_TEST_SUITE_P (Linux, HidServiceContract, LinuxWorld);

} // namespace wqv
