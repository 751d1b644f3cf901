// SPDX-License-Identifier: GPL-3.0-or-later
// What happens on the made-up Mac, and what must be over at its end.

#include "FakeMac.h"

#include "CfObjects.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace wqv
{
namespace
{

FakeMac* current = nullptr;

void callManager (Callback<IOHIDDeviceCallback> IoHidManager::*member, IOHIDDeviceRef device)
{
    auto* const manager = FakeMac::get().manager;

    if (manager != nullptr && manager->isScheduled && (manager->*member).function != nullptr)
        (manager->*member).function ((manager->*member).context, kIOReturnSuccess, manager, device);
}

/** Calls back about a device in turn(); the device lives until then. */
void later (IOHIDDeviceRef device, std::function<void()> callBack)
{
    CFRetain (device);
    FakeMac::get().pending.emplace_back (
        [device, call = std::move (callBack)]
        {
            call();
            CFRelease (device);
        });
}

} // namespace

FakeMac::FakeMac() : runLoop (make<CfRunLoop> (""))
{
    current = this;
}

FakeMac::~FakeMac()
{
    while (! attached.empty())
        unplug (attached.begin()->first);

    turn();
    EXPECT_EQ (opened, 0) << "not closed";
    EXPECT_EQ (scheduled, 0) << "still on the run loop";
    EXPECT_TRUE (assertions.empty());
    CFRelease (runLoop);

    for (auto* const object : liveObjects)
        ADD_FAILURE() << "an object of type " << object->type << " is not released";

    liveObjects.clear();
    current = nullptr;
}

FakeMac& FakeMac::get()
{
    return *current;
}

int FakeMac::plugIn (Numbers properties)
{
    auto* const device = make<IoHidDevice> ("", ++lastDevice, properties);
    attached[lastDevice] = device;
    tellOfAttached (device);
    return lastDevice;
}

void FakeMac::unplug (int number)
{
    auto* const device = attached.at (number);
    attached.erase (number);
    leaving.insert (device);
    later (device,
           [this, device]
           {
               if (device->isScheduled && device->onRemoval.function != nullptr)
                   device->onRemoval.function (device->onRemoval.context, kIOReturnSuccess, device);

               callManager (&IoHidManager::onRemoval, device);
               leaving.erase (device);
           });
    CFRelease (device);
}

void FakeMac::send (int number, std::vector<std::uint8_t> report, std::optional<CFIndex> length)
{
    auto* const device = attached.at (number);
    later (device,
           [this, device, length, bytes = std::move (report)]() mutable
           {
               if (! isAttached (device) || ! device->isScheduled || device->onReport.function == nullptr)
                   return;

               const auto kept = std::min (bytes.size(), static_cast<std::size_t> (device->bufferSize));
               std::copy_n (bytes.begin(), kept, device->buffer);
               device->onReport.function (device->onReport.context,
                                          kIOReturnSuccess,
                                          device,
                                          kIOHIDReportTypeInput,
                                          0,
                                          device->buffer,
                                          length.value_or (static_cast<CFIndex> (bytes.size())));
           });
}

void FakeMac::turn()
{
    while (! pending.empty())
    {
        const auto next = std::move (pending.front());
        pending.pop_front();
        next();
    }
}

void FakeMac::tellOfAttached (IoHidDevice* device)
{
    later (device,
           [this, device]
           {
               if (isAttached (device))
                   callManager (&IoHidManager::onMatching, device);
           });
}

bool FakeMac::isAttached (const IoHidDevice* device) const
{
    return attached.contains (device->number);
}

std::optional<IOReturn> FakeMac::failureOf (const std::string& function)
{
    const auto found = failures.find (function);

    if (found == failures.end() || found->second.first == 0)
        return {};

    --found->second.first;
    return found->second.second;
}

} // namespace wqv
