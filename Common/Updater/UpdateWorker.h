// SPDX-License-Identifier: GPL-3.0-or-later
// The thread that runs one update.

#pragma once

#include "HidCtrl.h"
#include "ResponseMailbox.h"
#include "UpdateSequence.h"
#include "UpdaterStatus.h"

#include <juce_core/juce_core.h>

#include <atomic>
#include <functional>

namespace wqv
{

/** Runs the UpdateSequence over the device session and the mailbox. The message thread starts and stops it. */
class UpdateWorker final : public juce::Thread, private UpdateSequence::Link
{
public:
    /** What the worker works with; all of it outlives the worker. */
    struct Context
    {
        const upd_info_t& upd_info;
        const FirmwareBlocks& fw_info;
        HidCtrl& hidCtrl;
        ResponseMailbox& mailbox;
        std::atomic<double>& progress;

        /** Asks for a status; called on the worker's thread. */
        std::function<void (UpdaterStatus_t)> post;

        /** Asks the message thread to tell the mailbox when it has read all there is; called on the worker's thread. */
        std::function<void()> askForTurn;
    };

    explicit UpdateWorker (Context contextToUse);

    /** Stops. */
    ~UpdateWorker() override;

    /** Asks the update to end and returns when the thread has: at once, or when the system gives up a write that it
        holds. Harmless when no update runs. The worker is not to be started again. */
    void stop();

    /** Posts "updating", runs the update, posts its outcome. */
    void run() override;

    /** Whether the update is complete. Any thread, once it has seen the outcome that was posted, or stopped the worker. */
    [[nodiscard]] bool isComplete() const { return hasCompleted; }

    /** Why the update failed. As isComplete(). */
    [[nodiscard]] const UpdateFailure& failure() const { return whatFailed; }

private:
    bool send (const Request& request) override;
    Answer wait (std::chrono::milliseconds limit) override;
    void pause (std::chrono::milliseconds duration) override;
    void reportProgress (double fraction) override;
    bool stopRequested() const override;

    Context context;
    bool hasCompleted = false;
    UpdateFailure whatFailed;
};

} // namespace wqv
