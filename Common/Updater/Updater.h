// SPDX-License-Identifier: GPL-3.0-or-later
// The updater without its window: the package, the device session, the status and the update.

#pragma once

#include "UpdaterStatus.h"

#include <juce_events/juce_events.h>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>

namespace wqv
{

class HidService;
struct UpdateFailure;

/** Model and controller of the program: the one place where the status changes.

    Every operation, and every call of the listener, is on the message thread. May be deleted at any moment, a running
    update included: the worker is stopped first.
*/
class Updater final : private juce::AsyncUpdater
{
public:
    /** Shows the updater's state. */
    class Listener
    {
    public:
        /** The status was set, perhaps to the one that it had: show it again. */
        virtual void updaterChanged() = 0;

    protected:
        Listener() = default;
        Listener (const Listener&) = default;
        Listener& operator= (const Listener&) = default;
        ~Listener() = default;
    };

    /** What the updater is given. */
    struct Host
    {
        HidService& hidService;       ///< outlives the updater
        std::filesystem::path folder; ///< where the package lies; if empty, there is none
        std::function<void()> quit;   ///< called once, when the user leaves; ends the program, maybe after its return

        /** The file of the package, wherever it lies; empty for the one in the folder. */
        std::filesystem::path package {};

        /** Keeps the machine awake for as long as what it returns lives; called at the start of an update. May be
            empty. */
        std::function<std::shared_ptr<void>()> keepAwake {};
    };

    /** Loads the package and looks for the controller. A package that is not valid is remembered as such, and then no
        controller is ever opened. The listener is not called yet. */
    Updater (Host hostToUse, Listener& listenerToUse);
    ~Updater() override;

    /** The package that lies in a folder; empty for an empty folder. */
    [[nodiscard]] static std::filesystem::path packageIn (const std::filesystem::path& folder);

    [[nodiscard]] UpdaterStatus_t status() const { return currentStatus; }

    /** Whether there is a package to offer: it was loaded and its version is above 0. */
    [[nodiscard]] bool packageValid() const { return packageIsValid; }

    /** The version of the package as a decimal number: 105 is 1.05. */
    [[nodiscard]] std::int32_t packageVersion() const;

    /** The firmware version of the controller as a decimal number; -1 while unknown. */
    [[nodiscard]] std::int32_t deviceVersion() const { return versionOfDevice; }

    /** How far the update is, 0.0 to 1.0, by the controller's own figure; not clamped. */
    [[nodiscard]] double progress() const { return progressOfUpdate; }

    /** Whether the update is complete, in UPDATER_STATUS_COMPLETE or after abandon(), which may come when the controller has
        finished and the status does not show it yet. */
    [[nodiscard]] bool isComplete() const;

    /** Why the update failed, in UPDATER_STATUS_ERROR; no cause if it could not be started, or was left at its very
        end. The window does not show it. */
    [[nodiscard]] const UpdateFailure& failure() const;

    /** The user presses the affirming button: leaves the first screen, starts the update, or ends the program. */
    void confirm();

    /** The user presses the other button: ends the program. */
    void leave();

    /** Stops a running update, and calls neither listener nor host: for a program that ends. */
    void abandon();

private:
    struct Engine;

    void handleAsyncUpdate() override;
    void updateSequence (UpdaterStatus_t next);
    void post (UpdaterStatus_t requested);
    void askForTurn();
    void takeTurn();
    void applyRequest (UpdaterStatus_t lowest);
    void leaveFirstScreen();
    void startUpdate();
    void quitSequence();

    void deviceChanged (std::int32_t version, UpdaterStatus_t requested);
    void removalCallBack();
    void matchingCallBack();
    void inputCallBack();

    Host host;
    Listener& listener;
    UpdaterStatus_t currentStatus = UPDATER_STATUS_START;
    bool packageIsValid = false;
    bool isLeaving = false;
    bool wasStarted = false;       ///< the update, which runs once
    std::shared_ptr<void> isAwake; ///< keeps the machine awake; there while an update runs
    std::int32_t versionOfDevice = -1;
    std::atomic<double> progressOfUpdate { 0.0 };

    std::atomic<int> turnsWanted { 0 }; ///< rounds of the message loop until the worker's wait may end

    juce::CriticalSection lock; ///< makes a request and its trigger one step
    std::int32_t pendingStatus; ///< what the worker or a device event asks for; noRequest if nothing

    std::unique_ptr<Engine> engine; ///< what the window does not see; deleted first
};

} // namespace wqv
