// SPDX-License-Identifier: GPL-3.0-or-later
// The devices that a system's HID service knows: each has an id, is told once as it comes and goes, and is tried again if it
// cannot be opened.

#pragma once

#include "OpenRetries.h"

#include <algorithm>
#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace wqv
{

/** What every system's HID service does with the devices that the system shows. Message thread only.
    @tparam Key     what the system knows a device by; one that comes back may have the same
    @tparam Detail  what the service keeps with it */
template <typename Key, typename Detail>
class KnownDevices final
{
public:
    struct Entry
    {
        HidDevice device;
        Detail detail;
        bool isGone = false; ///< though the system's own list may still have it
    };

    using Entries = std::map<Key, Entry>;

    /** @param onClosed  called for a device that could not be opened in all the time in which that is tried */
    explicit KnownDevices (std::function<void (const Entry&)> onClosed) : closedCallback (std::move (onClosed)) {}

    void setListener (HidService::Listener* newListener) { listener = newListener; }

    /** A device has come. The listener hears of it. */
    void appeared (const Key& key, const HidDevice& device, Detail detail)
    {
        list (key, device, std::move (detail));

        if (listener != nullptr)
            listener->deviceAttached (HidDevice (entries[key].device));
    }

    /** A device was found by a search, whose result tells of it. */
    void list (const Key& key, const HidDevice& device, Detail detail)
    {
        auto& entry = entries[key];
        entry = { .device = device, .detail = std::move (detail) };
        entry.device.id = ++lastId;
        retries.begin (lastId);
    }

    /** A device has gone, as several may tell: the first counts. It stays known until it is forgotten. */
    void gone (HidDeviceId device)
    {
        auto* const entry = find (device);

        if (entry == nullptr)
            return;

        entry->isGone = true;
        retries.end (device);

        if (listener != nullptr)
            listener->deviceRemoved (device);
    }

    /** The system's list has it no more. */
    void forget (const Key& key) { entries.erase (key); }

    void wasOpened (HidDeviceId device) { retries.begin (device); }

    /** It is told as attached again shortly, unless that was done often enough. */
    void wasNotOpened (HidDeviceId device) { retries.failed (device); }

    /** Something about a device that could not be opened has changed: to the listener it has just been attached. */
    void attachAgain (HidDeviceId device)
    {
        retries.begin (device);
        tryAgain (device);
    }

    void reportReceived (HidDeviceId device, std::size_t length)
    {
        if (listener != nullptr)
            listener->reportReceived (device, length);
    }

    /** A device that has not gone; null without one. */
    [[nodiscard]] Entry* find (HidDeviceId device)
    {
        const auto found = std::ranges::find_if (entries,
                                                 [device] (const auto& entry)
                                                 { return entry.second.device.id == device && ! entry.second.isGone; });
        return found != entries.end() ? &found->second : nullptr;
    }

    /** A device, be it gone or not; null without one. */
    [[nodiscard]] Entry* at (const Key& key)
    {
        const auto found = entries.find (key);
        return found != entries.end() ? &found->second : nullptr;
    }

    /** Those that have not gone. */
    [[nodiscard]] std::vector<HidDevice> attached() const
    {
        std::vector<HidDevice> devices;

        for (const auto& [key, entry] : entries)
            if (! entry.isGone)
                devices.push_back (entry.device);

        return devices;
    }

    [[nodiscard]] const Entries& all() const { return entries; }

private:
    void tryAgain (HidDeviceId device)
    {
        if (const auto* const entry = find (device); entry != nullptr && listener != nullptr)
            listener->deviceAttached (HidDevice (entry->device));
    }

    void giveUp (HidDeviceId device)
    {
        if (const auto* const entry = find (device))
            closedCallback (*entry);
    }

    Entries entries {};
    HidDeviceId lastId = 0;
    HidService::Listener* listener = nullptr;
    std::function<void (const Entry&)> closedCallback;
    OpenRetries retries { [this] (HidDeviceId device) { tryAgain (device); },
                          [this] (HidDeviceId device) { giveUp (device); } };
};

} // namespace wqv
