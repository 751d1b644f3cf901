// SPDX-License-Identifier: GPL-3.0-or-later
// A HID device of reports of 128 bytes at a USB port of dummy_hcd's, as a test wants it.

#pragma once

#include "DeviceIds.h"
#include "HidgNode.h"
#include "UsbGadget.h"

#include <cstdlib>
#include <filesystem>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace wqv
{

/** Plugged in and out by a test, which has root, udev and a free port; whatever fails is thrown. */
class UsbDevice
{
public:
    UsbDevice() { require (gadget.create()); }
    ~UsbDevice() { unplug(); }

    UsbDevice (const UsbDevice&) = delete;
    UsbDevice& operator= (const UsbDevice&) = delete;

    static bool isPossible()
    {
        return std::filesystem::exists (std::string ("/sys/class/udc/") + port) && geteuid() == 0;
    }

    /** Returns when udev has told of it. */
    void plugIn()
    {
        require (gadget.plugIn (0x0105));
        require (endpoint.open ("/dev/" + gadget.nodeOf (0)) ? "" : "no " + gadget.nodeOf (0));

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

    /** Returns when the host has fetched it. */
    void send (const std::vector<std::uint8_t>& report)
    {
        require (endpoint.write (report) ? "" : "the host takes no report");
        pollfd writable { .fd = endpoint.handle(), .events = POLLOUT, .revents = 0 };
        poll (&writable, 1, -1);
    }

    /** Whole reports from the host so far. */
    [[nodiscard]] std::size_t taken()
    {
        countReports();
        return reports;
    }

    /** Its path on the host; empty if there is none. */
    [[nodiscard]] static std::string node()
    {
        for (const auto& entry : std::filesystem::directory_iterator ("/dev"))
            if (entry.path().filename().string().starts_with ("hidraw"))
                return entry.path().string();

        return {};
    }

    /** Waits until udev has told all that it knows. */
    static void settle()
    {
        // NOLINTNEXTLINE (concurrency-mt-unsafe): nothing changes the environment meanwhile
        require (std::system ("udevadm settle --timeout 20") == 0 ? "" : "udev does not settle");
    }

private:
    static constexpr const char* port = "dummy_udc.0";

    static void require (const std::string& problem)
    {
        if (! problem.empty())
            throw std::runtime_error (problem);
    }

    /** They are lost when it is unplugged. */
    void countReports()
    {
        while (const auto report = endpoint.read())
            reports += report->size() == 128 ? 1U : 0U;
    }

    UsbGadget gadget { "/sys/kernel/config/usb_gadget",
                       port,
                       { .vendorId = static_cast<std::uint16_t> (kVendorId),
                         .productId = static_cast<std::uint16_t> (HidDeviceType[1]),
                         .reportLengths = { 128 } } };
    HidgNode endpoint;
    std::size_t reports = 0;
};

} // namespace wqv
