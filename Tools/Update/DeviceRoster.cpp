// SPDX-License-Identifier: GPL-3.0-or-later
// Keeps the book of the devices, and decides which of them the updater may see.

#include "DeviceRoster.h"

#include <algorithm>

namespace wqv
{

DeviceRoster::~DeviceRoster()
{
    service.setListener (nullptr);
}

std::vector<DeviceRoster::Entry> DeviceRoster::entries() const
{
    std::vector<Entry> list;
    list.reserve (book.size());

    for (const auto& [id, entry] : book)
        list.push_back (entry);

    return list;
}

std::optional<HidDevice> DeviceRoster::chosen() const
{
    return lastOpened && book.contains (lastOpened->id) ? lastOpened : std::nullopt;
}

void DeviceRoster::keepBack (bool wentAway, std::int32_t newVersion)
{
    if (! lastOpened)
        return;

    if (const auto found = book.find (lastOpened->id); wentAway && found != book.end() && found->second.isNext)
        return;

    const auto location = lastOpened->location;

    for (auto& [id, entry] : book)
        if (entry.device.location == location)
            entry.isDone = true;

    restarts.erase (location);

    if (newVersion != 0)
        restarts[location] = newVersion;
}

std::vector<HidDevice> DeviceRoster::devices()
{
    auto list = service.devices();

    // Some may have gone while nobody listened.
    std::erase_if (book,
                   [&list] (const auto& entry)
                   { return std::ranges::find (list, entry.first, &HidDevice::id) == list.end(); });
    std::erase_if (list, [this] (const auto& device) { return enter (device).isDone; });
    return list;
}

void DeviceRoster::setListener (HidService::Listener* newListener)
{
    listener = newListener;
    service.setListener (newListener != nullptr ? this : nullptr);
}

HidService::Opened DeviceRoster::open (HidDeviceId device, ReportBuffer& buffer)
{
    auto opened = service.open (device, buffer);

    if (const auto found = book.find (device); found != book.end())
    {
        found->second.opened = opened.result;

        if (opened.result == OpenResult::ok)
            lastOpened = found->second.device;
    }

    return opened;
}

void DeviceRoster::deviceAttached (const HidDevice& device)
{
    if (! enter (device).isDone)
        listener->deviceAttached (device);
}

void DeviceRoster::deviceRemoved (HidDeviceId device)
{
    book.erase (device);
    listener->deviceRemoved (device);
}

void DeviceRoster::reportReceived (HidDeviceId device, std::size_t length)
{
    listener->reportReceived (device, length);
}

/** The entry of a device, made if there is none yet. */
DeviceRoster::Entry& DeviceRoster::enter (const HidDevice& device)
{
    if (const auto known = book.find (device.id); known != book.end())
        return known->second;

    auto isDone = isPlaceDone (device.location);

    if (const auto restart = restarts.find (device.location); ! isDone && restart != restarts.end())
    {
        isDone = restart->second == device.versionNumber;
        restarts.erase (restart);
    }

    const auto isNext = lastOpened && ! book.contains (lastOpened->id);
    return book[device.id] = { .device = device, .opened = {}, .isNext = isNext, .isDone = isDone };
}

/** Whether a controller there is kept back: its interfaces come and go one by one. */
bool DeviceRoster::isPlaceDone (std::uint64_t location) const
{
    return std::ranges::any_of (book,
                                [location] (const auto& entry)
                                { return entry.second.isDone && entry.second.device.location == location; });
}

} // namespace wqv
