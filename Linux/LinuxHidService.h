// SPDX-License-Identifier: GPL-3.0-or-later
// The HID devices of a Linux system, by udev and hidraw.

#pragma once

#include "AttributeWatch.h"
#include "HidService.h"
#include "OpenRetries.h"
#include "UdevHidDevice.h"

#include <map>
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
        HidDevice device;
        std::string path;    ///< of the node, as in /dev/hidraw0
        bool isGone = false; ///< it has hung up, and udev is yet to say that it was removed
        int error = 0;       ///< the system's number for why its last open failed; 0 if it did not
        std::weak_ptr<HidConnection> connection {}; ///< the last one
    };

    /** By system path: at a removal the device's parents are gone already. */
    using Nodes = std::map<std::string, Node>;

    void handleMonitor();
    void handleAttributes (std::string_view fileName);
    void attachAgain (Node& closedNode);
    void nodeAppeared (udev_device& hidraw);
    void nodeGone (HidDeviceId device);
    void tryClosedNode (HidDeviceId device);
    void sayThatItIsClosed (HidDeviceId device);
    [[nodiscard]] Node* find (HidDeviceId device);

    UdevPointer<udev> context;
    UdevPointer<udev_monitor> monitor;
    AttributeWatch attributes { [this] (std::string_view fileName) { handleAttributes (fileName); } };
    OpenRetries retries { [this] (HidDeviceId device) { tryClosedNode (device); },
                          [this] (HidDeviceId device) { sayThatItIsClosed (device); } };
    Nodes nodes;
    HidDeviceId lastId = 0;
    Listener* listener = nullptr;
};

} // namespace wqv
