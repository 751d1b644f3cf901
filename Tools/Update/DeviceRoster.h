// SPDX-License-Identifier: GPL-3.0-or-later
// A HID service that knows what became of each device, and keeps back the controllers that have had their turn.

#pragma once

#include "HidService.h"

#include <map>
#include <optional>
#include <vector>

namespace wqv
{

/** Stands between the updater and a HID service. What the updater's transport opens, and with which result, shows which
    device it takes for the controller. Message thread. */
class DeviceRoster final : public HidService, private HidService::Listener
{
public:
    struct Entry
    {
        HidDevice device;
        std::optional<OpenResult> opened; ///< how the last attempt to open it ended; none if there was none
        bool isNext = false;              ///< it came when the one that was opened last had gone
        bool isDone = false;              ///< it is kept back
    };

    /** @param serviceToUse  outlives this object */
    explicit DeviceRoster (HidService& serviceToUse) : service (serviceToUse) {}
    ~DeviceRoster() override;

    /** The devices as they were last seen. */
    [[nodiscard]] std::vector<Entry> entries() const;

    /** The device that was opened last, if it is still there. */
    [[nodiscard]] std::optional<HidDevice> chosen() const;

    /** Keeps back the controller that was opened last, all its interfaces, until it is unplugged and comes back.
        @param wentAway    its update failed because it went away: one that has come since and was opened then has not had
                           its turn
        @param newVersion  which version it has now if it was updated, as in HidDevice: one that then comes back with it,
                           in the same place, has restarted by itself, and must come back once more; 0 if it was not */
    void keepBack (bool wentAway, std::int32_t newVersion);

    [[nodiscard]] std::vector<HidDevice> devices() override;
    void setListener (HidService::Listener* newListener) override;
    [[nodiscard]] Opened open (HidDeviceId device, ReportBuffer& buffer) override;

private:
    void deviceAttached (const HidDevice& device) override;
    void deviceRemoved (HidDeviceId device) override;
    void reportReceived (HidDeviceId device, std::size_t length) override;
    Entry& enter (const HidDevice& device);
    [[nodiscard]] bool isPlaceDone (std::uint64_t location) const;

    HidService& service;
    HidService::Listener* listener = nullptr;
    std::map<HidDeviceId, Entry> book;
    std::optional<HidDevice> lastOpened;
    std::map<std::uint64_t, std::int32_t> restarts; ///< by location: the version of an updated one that may restart
};

} // namespace wqv
