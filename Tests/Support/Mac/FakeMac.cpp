// SPDX-License-Identifier: GPL-3.0-or-later
// What happens on the made-up Mac, and what must be over at its end.

#include "FakeMac.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace wqv
{
namespace
{

FakeMac* current = nullptr;

} // namespace

FakeMac::FakeMac()
{
    current = this;
    runLoop = make<CFRunLoopRef> ({});
}

FakeMac::~FakeMac()
{
    for (std::size_t i = 0; i < devices.size(); ++i)
        if (devices[i].isAttached)
            unplug (static_cast<int> (i));

    turn();
    EXPECT_EQ (opened, 0) << "not closed";
    EXPECT_FALSE (manager.isScheduled || std::ranges::any_of (devices, &Device::isScheduled)) << "on the run loop";
    EXPECT_TRUE (assertions.empty());
    CFRelease (runLoop);

    for (const auto& object : objects)
        EXPECT_LE (object.owners, 0) << "an object of type " << object.type << " is not released: " << object.text;

    current = nullptr;
}

FakeMac& FakeMac::get()
{
    return *current;
}

int FakeMac::plugIn (const Numbers& properties)
{
    const auto number = static_cast<int> (devices.size());
    CfObject device { .type = deviceType, .number = number };

    for (const auto& [name, value] : properties)
        device.values[name] = make<CFNumberRef> ({ .type = numberType, .number = value });

    tellOfAttached (devices.emplace_back (Device { .reference = make<IOHIDDeviceRef> (std::move (device)) }));
    return number;
}

void FakeMac::unplug (int number)
{
    auto& device = devices.at (static_cast<std::size_t> (number));
    device.isAttached = false;
    pending.emplace_back (
        [this, &device]
        {
            if (device.isScheduled)
                device.onRemoval (device.reference);

            if (manager.isScheduled)
                manager.onRemoval (nullptr, device.reference);

            device.isListed = false;
            CFRelease (device.reference);
        });
}

void FakeMac::send (int number, std::vector<std::uint8_t> report, std::optional<CFIndex> length)
{
    auto& device = devices.at (static_cast<std::size_t> (number));
    pending.emplace_back (
        [&device, length, bytes = std::move (report)]
        {
            if (! device.isAttached || ! device.isScheduled)
                return;

            const auto size = static_cast<CFIndex> (bytes.size());
            std::copy_n (bytes.begin(), std::min (size, device.bufferSize), device.buffer);
            device.onReport (device.reference, kIOHIDReportTypeInput, 0u, device.buffer, length.value_or (size));
        });
}

void FakeMac::turn()
{
    for (; ! pending.empty(); pending.pop_front())
        pending.front()();
}

bool FakeMac::raise (int signal)
{
    const auto source = std::ranges::find_if (
        objects, [signal] (const CfObject& object) { return object.isActive && object.number == signal; });

    if (source == objects.end())
        return false;

    source->handler (source->context);
    return true;
}

void FakeMac::tellOfAttached (Device& device)
{
    pending.emplace_back (
        [this, &device]
        {
            if (device.isAttached && manager.isScheduled)
                manager.onMatching (nullptr, device.reference);
        });
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
