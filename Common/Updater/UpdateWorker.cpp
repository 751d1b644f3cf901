// SPDX-License-Identifier: GPL-3.0-or-later
// The worker thread: sends through the session, waits at the mailbox, notes the progress.

#include "UpdateWorker.h"

#include <utility>

namespace wqv
{

UpdateWorker::UpdateWorker (Context contextToUse) : Thread ("UpdateWorker"), context (std::move (contextToUse)) {}

UpdateWorker::~UpdateWorker()
{
    stop();
}

void UpdateWorker::stop()
{
    signalThreadShouldExit();
    context.mailbox.stop();
    stopThread (-1);
}

void UpdateWorker::run()
{
    context.post (UPDATER_STATUS_UPDATING);

    UpdateSequence sequence (*this, context.upd_info, context.fw_info);
    hasCompleted = sequence.run();

    whatFailed = sequence.failure();
    context.post (hasCompleted ? UPDATER_STATUS_COMPLETE : UPDATER_STATUS_ERROR);
}

bool UpdateWorker::send (const Request& request)
{
    return context.hidCtrl.setData (request);
}

Answer UpdateWorker::wait (std::chrono::milliseconds limit)
{
    return context.mailbox.wait (limit, context.askForTurn);
}

void UpdateWorker::pause (std::chrono::milliseconds duration)
{
    Thread::wait (static_cast<int> (duration.count()));
}

void UpdateWorker::reportProgress (double fraction)
{
    context.progress = fraction;
}

bool UpdateWorker::stopRequested() const
{
    return threadShouldExit();
}

} // namespace wqv
