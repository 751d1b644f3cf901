// SPDX-License-Identifier: GPL-3.0-or-later
// HID devices that exist only in this process, on the real message loop.

#pragma once

#include "HidService.h"
#include "SimulatedController.h"

#include <juce_events/juce_events.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <span>
#include <vector>

namespace wqv
{

/** Offers virtual controllers as HID devices. Reports and what the controllers do of themselves arrive through the
    message loop, at the controllers' pace; plugging and unplugging by the operations below arrives at once.

    Message thread, but the connections' send.
*/
class SimulatedHidService final : public HidService, private juce::Timer, private juce::AsyncUpdater
{
public:
    SimulatedHidService() = default;
    ~SimulatedHidService() override;

    /** Attaches a device that presents itself as the controller which the program seeks.
        @param controller  outlives the service; null for a device that is silent */
    HidDeviceId plugIn (SimulatedController* controller);

    /** Attaches any device; the service chooses its id, and a controller tells its own version number. */
    HidDeviceId plugIn (HidDevice device, SimulatedController* controller);

    /** Detaches a device; reports of it that are under way are lost. */
    void unplug (HidDeviceId device);

    /** Makes a device send a report, now. */
    void deliver (HidDeviceId device, std::span<const std::uint8_t> report);

    [[nodiscard]] std::vector<HidDevice> devices() override;
    void setListener (Listener* newListener) override;
    [[nodiscard]] Opened open (HidDeviceId device, ReportBuffer& buffer) override;

private:
    using Clock = std::chrono::steady_clock;

    class Connection;

    struct Slot
    {
        HidDevice device;
        SimulatedController* controller = nullptr;
        ReportBuffer* buffer = nullptr; ///< null while it is not open
    };

    struct PendingEvent
    {
        HidDeviceId device = 0;
        HidDevice description;
        SimulatedController* controller = nullptr;
        SimulatedController::Event event;
    };

    bool send (HidDeviceId device, std::span<const std::uint8_t> report);
    void happen (const PendingEvent& pending);
    void playEvents();
    void handleAsyncUpdate() override { playEvents(); }
    void timerCallback() override { playEvents(); }

    Listener* listener = nullptr;
    HidDeviceId lastId = 0;

    std::mutex lock; ///< guards what follows, and every virtual controller
    std::condition_variable unplugged;
    std::map<HidDeviceId, Slot> slots;
    std::multimap<Clock::time_point, PendingEvent> events;
};

} // namespace wqv
