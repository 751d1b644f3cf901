// SPDX-License-Identifier: GPL-3.0-or-later
// The HID service of Linux on a real kernel, by what every service must do: script/try-kernel runs it.

#include "HidServiceContract.h"

#include "LinuxHidService.h"
#include "UsbDevice.h"

#include <fcntl.h>
#include <sys/file.h>

namespace wqv
{
namespace
{

class LinuxWorld : public UsualWorld
{
public:
    static bool isPossible() { return UsbDevice::isPossible(); }

    /** Root is never denied. */
    static bool knows (HidService::OpenResult end) { return end == HidService::OpenResult::inUse; }

    HidService& service() { return hidService; }
    void plugIn() { device.plugIn(); }
    void unplug() { device.unplug(); }
    void send (const std::vector<std::uint8_t>& report) { device.send (report); }
    std::size_t taken() { return device.taken(); }

    void refuse (HidService::OpenResult result)
    {
        if (result == HidService::OpenResult::inUse)
        {
            holder = open (UsbDevice::node().c_str(), O_RDWR | O_CLOEXEC);
            EXPECT_EQ (flock (holder, LOCK_EX | LOCK_NB), 0);
        }
        else
        {
            close (holder);
        }
    }

    void drain()
    {
        UsbDevice::settle();
        MessageLoop::drain();
    }

private:
    UsbDevice device;
    LinuxHidService hidService;
    int holder = -1;
};

} // namespace

INSTANTIATE_TYPED_TEST_SUITE_P (Linux, HidServiceContract, LinuxWorld);

} // namespace wqv
