// SPDX-License-Identifier: GPL-3.0-or-later
// One run of wqv-update: finds a controller, asks, updates it, and perhaps goes on with the next.

#pragma once

#include "DeviceRoster.h"
#include "Reporter.h"
#include "Updater.h"

#include <juce_events/juce_events.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace wqv
{

/** What the process returns. */
enum class ExitStatus
{
    complete = 0,
    failed = 1, ///< or stopped, or declined
    usage = 2,
    noController = 3,
    badPackage = 4
};

/** Does with an updater what a person does with the window. Message thread. */
class Session final : private Updater::Listener, private juce::AsyncUpdater, private juce::Timer
{
public:
    struct Settings
    {
        std::filesystem::path package;
        bool asks = true;     ///< the user is asked before each update
        bool waits = false;   ///< for a controller, if there is none
        bool repeats = false; ///< goes on with the next one after each; waits, too
        std::function<std::shared_ptr<void>()> keepAwake {};

        /** Reads a line from the user and gives it back, later, on the message thread. */
        std::function<void (std::function<void (const std::string&)>)> readAnswer {};

        /** All is over; the exit status is known. */
        std::function<void()> onEnd;
    };

    /** @param rosterToUse, reporterToUse  outlive this object */
    Session (DeviceRoster& rosterToUse, Reporter& reporterToUse, Settings settingsToUse);
    ~Session() override;

    /** Looks for the first controller. May end all at once. */
    void start();

    /** The program is to end: stops an update as leaving the window does, and says so. */
    void stop();

    [[nodiscard]] ExitStatus exitStatus() const { return status; }

private:
    void updaterChanged() override { triggerAsyncUpdate(); }
    void handleAsyncUpdate() override;
    void timerCallback() override { reporter.progress (updater->progress()); }

    void takeNext();
    void missController();
    void offer();
    void answered (const std::string& line);
    void begin();
    void judge();
    void conclude (Outcome outcome);
    void end (ExitStatus how);
    [[nodiscard]] int numberOfTurn() const;

    DeviceRoster& roster;
    Reporter& reporter;
    const Settings settings;
    ExitStatus status = ExitStatus::failed;
    bool isOver = false;
    bool isReading = false; ///< a line of the user's is awaited
    int complete = 0;
    int notComplete = 0;

    // Of the controller whose turn it is:
    bool isBegun = false;
    bool isMissed = false;               ///< it is known that there is none
    std::optional<std::int32_t> offered; ///< its version, as the user has seen it
    std::optional<Updater> updater;      ///< deleted first
};

} // namespace wqv
