// SPDX-License-Identifier: GPL-3.0-or-later
// One open device of IOKit's.

#pragma once

#include "CfPointer.h"
#include "HidService.h"

#include <IOKit/hid/IOHIDLib.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <span>

namespace wqv
{

/** Takes input reports on the message loop, sends output reports on any thread, closes the device with its last owner. */
class IoHidConnection final : public HidConnection, public std::enable_shared_from_this<IoHidConnection>
{
public:
    /** @param openDevice  open already; this object closes it */
    explicit IoHidConnection (IOHIDDeviceRef openDevice);
    ~IoHidConnection() override;

    /** Starts listening, on the run loop of the calling thread, the message thread.
        @param reportBuffer    receives each report before onReport is called with its length
        @param onReport        called for every report
        @param onHangUp        called once, when the device has gone; input has stopped then */
    void startInput (ReportBuffer& reportBuffer,
                     std::function<void (std::size_t)> onReport,
                     std::function<void()> onHangUp);

    void stopInput() override;
    [[nodiscard]] bool send (std::span<const std::uint8_t> report) override;

private:
    static void Handle_IOHIDDeviceRemovalCallback (void* context, IOReturn result, void* sender);
    static void Handle_IOHIDDeviceIOHIDReportCallback (void* context,
                                                       IOReturn result,
                                                       void* sender,
                                                       IOHIDReportType type,
                                                       std::uint32_t reportId,
                                                       std::uint8_t* report,
                                                       CFIndex reportLength);

    const CfPointer<IOHIDDeviceRef> device;
    CfPointer<CFRunLoopRef> runLoop; ///< null while input is stopped
    ReportBuffer* buffer = nullptr;
    std::function<void (std::size_t)> reportCallback;
    std::function<void()> hangUpCallback;
};

} // namespace wqv
