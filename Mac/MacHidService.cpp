// SPDX-License-Identifier: GPL-3.0-or-later
// The HID devices that IOKit's manager has, news of them, and opening them.

#include "MacHidService.h"

#include "Complaint.h"
#include "IoHidConnection.h"
#include "IoHidDevice.h"

#include <IOKit/IOReturn.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>

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

} // namespace

MacHidService::MacHidService() : runLoop (shared (CFRunLoopGetCurrent()))
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
    std::vector<HidDevice> found;

    if (list.manager() == nullptr)
        return found;

    list.HIDRebuildDevices();
    std::vector<IOHIDDeviceRef> listed;

    for (auto* device = list.HIDGetFirstDevice(); device != nullptr; device = list.HIDGetNextDevice (device))
    {
        listed.push_back (device);

        // Told by what is returned, not by a callback.
        if (find (device) == nullptr)
        {
            auto* const hearing = std::exchange (listener, nullptr);
            deviceAppeared (device);
            listener = hearing;
        }

        if (const auto& entry = *find (device); ! entry.isGone)
            found.push_back (entry.device);
    }

    list.HIDReleaseDeviceList();

    // What has gone, and no list has any more, is forgotten.
    std::erase_if (known,
                   [&listed] (const Known& entry)
                   { return entry.isGone && std::ranges::find (listed, entry.reference.get()) == listed.end(); });
    return found;
}

void MacHidService::setListener (Listener* newListener)
{
    listener = newListener;
}

HidService::Opened MacHidService::open (HidDeviceId device, ReportBuffer& buffer)
{
    auto* const entry = find (device);

    if (entry == nullptr)
        return { .result = OpenResult::gone, .connection = nullptr };

    entry->error = openDevice (entry->reference.get());

    if (entry->error != kIOReturnSuccess)
    {
        retries.failed (device);
        return { .result = resultOf (entry->error), .connection = nullptr };
    }

    retries.begin (device);
    const auto connection = std::make_shared<IoHidConnection> (entry->reference.get());

    connection->startInput (
        buffer,
        [this, device] (std::size_t length)
        {
            if (listener != nullptr)
                listener->reportReceived (device, length);
        },
        [this, device] { deviceGone (device); });

    return { .result = OpenResult::ok, .connection = connection };
}

void MacHidService::Handle_DeviceMatchingCallback (void* context,
                                                   IOReturn /*result*/,
                                                   void* /*sender*/,
                                                   IOHIDDeviceRef device)
{
    auto& service = *static_cast<MacHidService*> (context);

    if (const auto* const entry = service.find (device); entry == nullptr || entry->isGone)
        service.deviceAppeared (device);
}

void MacHidService::Handle_DeviceRemovalCallback (void* context,
                                                  IOReturn /*result*/,
                                                  void* /*sender*/,
                                                  IOHIDDeviceRef device)
{
    auto& service = *static_cast<MacHidService*> (context);

    if (const auto* const entry = service.find (device); entry != nullptr)
        service.deviceGone (entry->device.id);
}

void MacHidService::deviceAppeared (IOHIDDeviceRef reference)
{
    auto device = describeIoHidDevice (reference);
    device.id = ++lastId;

    std::erase_if (known, [reference] (const Known& entry) { return entry.reference.get() == reference; });
    known.push_back ({ .device = device, .reference = shared (reference) });
    retries.begin (device.id);

    if (listener != nullptr)
        listener->deviceAttached (device);
}

/** Its connection and the manager may both tell this; the first counts. */
void MacHidService::deviceGone (HidDeviceId device)
{
    auto* const entry = find (device);

    if (entry == nullptr)
        return;

    entry->isGone = true;
    retries.end (device);

    if (listener != nullptr)
        listener->deviceRemoved (device);
}

/** To the listener a device that has become accessible is one that was just attached. */
void MacHidService::tryClosedDevice (HidDeviceId device)
{
    if (const auto* const entry = find (device); entry != nullptr && listener != nullptr)
        listener->deviceAttached (HidDevice (entry->device));
}

void MacHidService::sayThatItIsClosed (HidDeviceId device)
{
    const auto* const entry = find (device);

    if (entry == nullptr)
        return;

    const auto place = static_cast<std::uint32_t> (IOHIDDevice_GetLocationID (entry->reference.get()));
    const auto reason = resultOf (entry->error) == OpenResult::inUse
                            ? "in use by another program"
                            : "error " + hexadecimal (static_cast<std::uint32_t> (entry->error));

    complain ("cannot open the device at " + hexadecimal (place) + ": " + reason);
}

/** A device that has not gone. */
MacHidService::Known* MacHidService::find (HidDeviceId device)
{
    const auto found = std::ranges::find_if (
        known, [device] (const Known& entry) { return entry.device.id == device && ! entry.isGone; });
    return found != known.end() ? &*found : nullptr;
}

/** A device, be it gone or not. */
MacHidService::Known* MacHidService::find (IOHIDDeviceRef reference)
{
    const auto found =
        std::ranges::find_if (known, [reference] (const Known& entry) { return entry.reference.get() == reference; });
    return found != known.end() ? &*found : nullptr;
}

} // namespace wqv
