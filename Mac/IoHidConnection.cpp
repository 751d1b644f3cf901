// SPDX-License-Identifier: GPL-3.0-or-later
// Reports and the removal of a device of IOKit's.

#include "IoHidConnection.h"

#include <IOKit/IOReturn.h>

#include <algorithm>
#include <utility>

namespace wqv
{

IoHidConnection::IoHidConnection (IOHIDDeviceRef openDevice) : device (shared (openDevice)) {}

IoHidConnection::~IoHidConnection()
{
    stopInput();
    IOHIDDeviceClose (device.get(), kIOHIDOptionsTypeNone);
}

void IoHidConnection::startInput (ReportBuffer& reportBuffer,
                                  std::function<void (std::size_t)> onReport,
                                  std::function<void()> onHangUp)
{
    buffer = &reportBuffer;
    reportCallback = std::move (onReport);
    hangUpCallback = std::move (onHangUp);

    IOHIDDeviceRegisterRemovalCallback (device.get(), Handle_IOHIDDeviceRemovalCallback, this);
    IOHIDDeviceRegisterInputReportCallback (device.get(),
                                            buffer->data(),
                                            static_cast<CFIndex> (buffer->size()),
                                            Handle_IOHIDDeviceIOHIDReportCallback,
                                            this);

    // In all its modes: while a menu is open, or the window is dragged, an update goes on.
    runLoop = shared (CFRunLoopGetCurrent());
    IOHIDDeviceScheduleWithRunLoop (device.get(), runLoop.get(), kCFRunLoopCommonModes);
}

void IoHidConnection::stopInput()
{
    const auto scheduled = std::exchange (runLoop, nullptr);

    if (scheduled == nullptr)
        return;

    IOHIDDeviceRegisterRemovalCallback (device.get(), nullptr, nullptr);
    IOHIDDeviceRegisterInputReportCallback (
        device.get(), buffer->data(), static_cast<CFIndex> (buffer->size()), nullptr, nullptr);
    IOHIDDeviceUnscheduleFromRunLoop (device.get(), scheduled.get(), kCFRunLoopCommonModes);
}

bool IoHidConnection::send (std::span<const std::uint8_t> report)
{
    constexpr CFIndex reportId = 0;

    return IOHIDDeviceSetReport (
               device.get(), kIOHIDReportTypeOutput, reportId, report.data(), static_cast<CFIndex> (report.size()))
           == kIOReturnSuccess;
}

void IoHidConnection::Handle_IOHIDDeviceRemovalCallback (void* context, IOReturn /*result*/, void* /*sender*/)
{
    // Who hears of it may drop this object.
    const auto connection = static_cast<IoHidConnection*> (context)->shared_from_this();
    connection->stopInput();
    connection->hangUpCallback();
}

/** The report lies in the buffer already. */
void IoHidConnection::Handle_IOHIDDeviceIOHIDReportCallback (void* context,
                                                             IOReturn /*result*/,
                                                             void* /*sender*/,
                                                             IOHIDReportType /*type*/,
                                                             std::uint32_t /*reportId*/,
                                                             std::uint8_t* /*report*/,
                                                             CFIndex reportLength)
{
    const auto connection = static_cast<IoHidConnection*> (context)->shared_from_this();
    connection->reportCallback (static_cast<std::size_t> (std::max (CFIndex { 0 }, reportLength)));
}

} // namespace wqv
