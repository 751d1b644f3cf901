// SPDX-License-Identifier: GPL-3.0-or-later
// A virtual controller at a USB gadget: one loop over reports, commands, signals and time.

#pragma once

#include "HidgNode.h"
#include "SimulatedController.h"
#include "UsbGadget.h"

#include <chrono>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace wqv
{

/** Carries reports between the host and the controller, and plugs the gadget in and out as the controller, or a line on
    standard input, wants it. One thread, which blocks in run(). */
class ControllerBoard
{
public:
    /** @param gadgetToUse          created, with an interface for each of @p interfaceCount
        @param controllerInterface  the one on which the controller answers; both objects outlive this one */
    ControllerBoard (UsbGadget& gadgetToUse,
                     SimulatedController& controllerToUse,
                     std::size_t interfaceCount,
                     std::size_t controllerInterface);

    /** Serves the host until "quit" or a signal.
        @param signals   a signalfd; whatever it has to say is the end
        @param isAbsent  the controller is not plugged in at the start
        @returns what went wrong, for people; empty on success */
    [[nodiscard]] std::string run (int signals, bool isAbsent);

private:
    using Clock = std::chrono::steady_clock;
    using Event = SimulatedController::Event;

    void readCommands();
    void obey (std::string_view command);
    void readReport (const HidgNode& node);
    void playEvents();
    void happen (const Event& event);
    void plugIn();
    void unplug();
    void fail (const std::string& problem);
    [[nodiscard]] int millisecondsToNextEvent() const;

    UsbGadget& gadget;
    SimulatedController& controller;
    std::vector<HidgNode> nodes; ///< by interface; closed while the controller is not plugged in
    const HidgNode& controllerNode;

    bool isPluggedIn = false;
    bool takesReports = true;
    bool waitsForHost = false; ///< the first event is due, but the host has not fetched the last report
    bool isOver = false;
    bool inputHasEnded = false;
    std::string input; ///< the beginning of a command
    std::string failure;
    std::multimap<Clock::time_point, Event> events;
};

} // namespace wqv
