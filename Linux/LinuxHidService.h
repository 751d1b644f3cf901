// SPDX-License-Identifier: GPL-3.0-or-later
// The HID devices of a Linux system, by udev and hidraw.

#pragma once

#include "AttributeWatch.h"
#include "HidService.h"
#include "KnownDevices.h"
#include "UdevHidDevice.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace wqv
{

/** Runs on the message loop alone: no thread, no polling. What nobody would learn otherwise it says on standard error: that
    there is no udev, and so no news of devices, and which node could not be opened, and why. */
class LinuxHidService final : public HidService
{
public:
    LinuxHidService();
    ~LinuxHidService() override;

    [[nodiscard]] std::vector<HidDevice> devices() override;
    void setListener (Listener* newListener) override;
    [[nodiscard]] Opened open (HidDeviceId device, ReportBuffer& buffer) override;

private:
    struct Node
    {
        std::string path; ///< of the node, as in /dev/hidraw0
        int error = 0;    ///< the system's number for why its last open failed; 0 if it did not
        std::weak_ptr<HidConnection> connection {}; ///< the last one
    };

    /** By system path: at a removal the device's parents are gone already. */
    using Nodes = KnownDevices<std::string, Node>;

    void handleMonitor();
    void handleAttributes (std::string_view fileName);

    UdevPointer<udev> context;
    UdevPointer<udev_monitor> monitor;
    AttributeWatch attributes { [this] (std::string_view fileName) { handleAttributes (fileName); } };
    Nodes nodes;
};

} // namespace wqv
