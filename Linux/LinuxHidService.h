// SPDX-License-Identifier: GPL-3.0-or-later
// The HID devices of a Linux system, by udev and hidraw.

#pragma once

#include "HidService.h"
#include "UdevHidDevice.h"

#include <juce_events/juce_events.h>

#include <map>
#include <string>
#include <vector>

namespace wqv
{

/** Runs on the message loop alone: no thread, no polling. Without udev in reach it says so on standard error and knows
    no devices. */
class LinuxHidService final : public HidService, private juce::Timer
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
        std::string path;      ///< of the node, as in /dev/hidraw0
        bool isGone = false;   ///< it has hung up, and udev is yet to say that it was removed
        bool isClosed = false; ///< its last open failed
        bool isDenied = false; ///< its last open was refused for want of permission
        int attemptsLeft = 0;  ///< to open it while it, or its permissions, may still be on their way
    };

    /** By system path: at a removal the device's parents are gone already. */
    using Nodes = std::map<std::string, Node>;

    void handleMonitor();
    void nodeAppeared (udev_device& hidraw);
    void nodeGone (HidDeviceId device);
    void tryClosedNode (HidDeviceId device);
    void timerCallback() override;
    [[nodiscard]] Node* find (HidDeviceId device);

    UdevPointer<udev> context;
    UdevPointer<udev_monitor> monitor;
    Nodes nodes;
    HidDeviceId lastId = 0;
    Listener* listener = nullptr;
};

} // namespace wqv
