// SPDX-License-Identifier: GPL-3.0-or-later
// The HID devices of a Mac, by IOKit.

#pragma once

#include "CfPointer.h"
#include "HidDeviceList.h"
#include "HidService.h"
#include "KnownDevices.h"

#include <IOKit/hid/IOHIDLib.h>

#include <vector>

namespace wqv
{

/** Runs on the run loop of the thread that makes it, the message thread: no thread, no polling. What nobody would learn
    otherwise it says on standard error: that there is no manager of HID devices, or that it was not opened, and which device could
    not be opened, and why. */
class MacHidService final : public HidService
{
public:
    MacHidService();
    ~MacHidService() override;

    [[nodiscard]] std::vector<HidDevice> devices() override;
    void setListener (Listener* newListener) override;
    [[nodiscard]] Opened open (HidDeviceId device, ReportBuffer& buffer) override;

private:
    struct Known
    {
        CfPointer<IOHIDDeviceRef> reference; ///< kept, so that no other device can get the same address
        IOReturn error = kIOReturnSuccess;   ///< of its last open
    };

    using Devices = KnownDevices<IOHIDDeviceRef, Known>;

    static void Handle_DeviceMatchingCallback (void* context, IOReturn result, void* sender, IOHIDDeviceRef device);
    static void Handle_DeviceRemovalCallback (void* context, IOReturn result, void* sender, IOHIDDeviceRef device);

    HidDeviceList list;
    CfPointer<CFRunLoopRef> runLoop;
    Devices known;
};

} // namespace wqv
