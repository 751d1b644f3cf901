// SPDX-License-Identifier: GPL-3.0-or-later
// The HID devices that IOKit's manager has, news of them, and opening them.

#include "MacHidService.h"

#include "Complaint.h"
#include "IoHidConnection.h"
#include "IoHidDevice.h"

#include <IOKit/IOReturn.h>

#include <array>
#include <cstdio>
#include <memory>
#include <set>
#include <string>

namespace wqv
{
namespace
{

HidService::OpenResult resultOf (IOReturn error)
{
    switch (error)
    {
        case kIOReturnSuccess: return HidService::OpenResult::ok;

        case kIOReturnNotPermitted:
        case kIOReturnNotPrivileged: return HidService::OpenResult::denied;

        case kIOReturnBusy:
        case kIOReturnExclusiveAccess: return HidService::OpenResult::inUse;

        default: return HidService::OpenResult::gone;
    }
}

/** Opens a device for this program alone, or if the system does not allow that, with others. */
IOReturn openDevice (IOHIDDeviceRef device)
{
    return IOHIDDeviceOpen (device, kIOHIDOptionsTypeSeizeDevice) == kIOReturnSuccess
               ? kIOReturnSuccess
               : IOHIDDeviceOpen (device, kIOHIDOptionsTypeNone);
}

std::string hexadecimal (std::uint32_t number)
{
    std::array<char, 16> text {};
    std::snprintf (text.data(), text.size(), "0x%08x", number);
    return text.data();
}

void sayThatItIsClosed (IOHIDDeviceRef device, IOReturn error)
{
    const auto place = static_cast<std::uint32_t> (IOHIDDevice_GetLocationID (device));
    const auto reason = resultOf (error) == HidService::OpenResult::inUse
                            ? "in use by another program"
                            : "error " + hexadecimal (static_cast<std::uint32_t> (error));

    complain ("cannot open the device at " + hexadecimal (place) + ": " + reason);
}

} // namespace

MacHidService::MacHidService()
    : runLoop (shared (CFRunLoopGetCurrent())),
      known ([] (const Devices::Entry& entry) { sayThatItIsClosed (entry.detail.reference.get(), entry.detail.error); })
{
    list.HIDBuildDeviceList (0, 0);

    if (list.manager() == nullptr)
        return;

    // The manager tells the devices that are there, too.
    IOHIDManagerRegisterDeviceMatchingCallback (list.manager(), Handle_DeviceMatchingCallback, this);
    IOHIDManagerRegisterDeviceRemovalCallback (list.manager(), Handle_DeviceRemovalCallback, this);
    IOHIDManagerScheduleWithRunLoop (list.manager(), runLoop.get(), kCFRunLoopCommonModes);
}

MacHidService::~MacHidService()
{
    if (list.manager() == nullptr)
        return;

    IOHIDManagerRegisterDeviceMatchingCallback (list.manager(), nullptr, nullptr);
    IOHIDManagerRegisterDeviceRemovalCallback (list.manager(), nullptr, nullptr);
    IOHIDManagerUnscheduleFromRunLoop (list.manager(), runLoop.get(), kCFRunLoopCommonModes);
}

std::vector<HidDevice> MacHidService::devices()
{
    if (list.manager() == nullptr)
        return {};

    list.HIDRebuildDevices();
    std::set<IOHIDDeviceRef> listed;

    for (auto* device = list.HIDGetFirstDevice(); device != nullptr; device = list.HIDGetNextDevice (device))
    {
        listed.insert (device);

        if (known.at (device) == nullptr)
            known.list (device, describeIoHidDevice (device), { .reference = shared (device) });
    }

    list.HIDReleaseDeviceList();

    // What has gone, and no list has any more, is forgotten.
    for (auto next = known.all().begin(); next != known.all().end();)
        if (const auto& [device, entry] = *next++; entry.isGone && ! listed.contains (device))
            known.forget (device);

    return known.attached();
}

void MacHidService::setListener (Listener* newListener)
{
    known.setListener (newListener);
}

HidService::Opened MacHidService::open (HidDeviceId device, ReportBuffer& buffer)
{
    auto* const entry = known.find (device);

    if (entry == nullptr)
        return { .result = OpenResult::gone, .connection = nullptr };

    auto& [reference, error] = entry->detail;
    error = openDevice (reference.get());

    if (error != kIOReturnSuccess)
    {
        known.wasNotOpened (device);
        return { .result = resultOf (error), .connection = nullptr };
    }

    known.wasOpened (device);
    const auto connection = std::make_shared<IoHidConnection> (reference.get());

    connection->startInput (
        buffer,
        [this, device] (std::size_t length) { known.reportReceived (device, length); },
        [this, device] { known.gone (device); });

    return { .result = OpenResult::ok, .connection = connection };
}

void MacHidService::Handle_DeviceMatchingCallback (void* context,
                                                   IOReturn /*result*/,
                                                   void* /*sender*/,
                                                   IOHIDDeviceRef device)
{
    auto& known = static_cast<MacHidService*> (context)->known;

    if (const auto* const entry = known.at (device); entry == nullptr || entry->isGone)
        known.appeared (device, describeIoHidDevice (device), { .reference = shared (device) });
}

void MacHidService::Handle_DeviceRemovalCallback (void* context,
                                                  IOReturn /*result*/,
                                                  void* /*sender*/,
                                                  IOHIDDeviceRef device)
{
    auto& known = static_cast<MacHidService*> (context)->known;

    if (const auto* const entry = known.at (device))
        known.gone (entry->device.id);
}

} // namespace wqv
