// SPDX-License-Identifier: GPL-3.0-or-later
// Xlib's handler for a connection that breaks.

#include "DisplayLoss.h"

#include "Complaint.h"

#include <X11/Xlib.h>
#include <csignal>
#include <cstdlib>
#include <unistd.h>
#include <utility>

namespace wqv
{
namespace
{

/** What the handler calls: it has no other way to learn it. */
std::function<void()>& stepsBeforeTheEnd()
{
    static std::function<void()> steps;
    return steps;
}

int handleLoss (Display* /*display*/)
{
    // With the display may go the terminal that would show the line.
    std::signal (SIGPIPE, SIG_IGN);

    if (stepsBeforeTheEnd())
        stepsBeforeTheEnd()();

    complain ("the display has gone away");

    // Whatever else would be called at exit counts on the display, and on the place where the thread is.
    _exit (EXIT_FAILURE);
}

} // namespace

DisplayLoss::DisplayLoss (std::function<void()> lastSteps)
{
    stepsBeforeTheEnd() = std::move (lastSteps);
    XSetIOErrorHandler (handleLoss);
}

DisplayLoss::~DisplayLoss()
{
    stepsBeforeTheEnd() = nullptr;
}

} // namespace wqv
