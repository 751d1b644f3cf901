// SPDX-License-Identifier: GPL-3.0-or-later
// Which promises an update with all threads has broken.

#pragma once

#include "FaultedUpdate.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace wqv
{

/** Compares the update with what its faults lead to on a clock that only waits and pauses move, in one thread: the threads, the
    message loop and real time must change nothing. Where a controller says more than the protocol allows it, what comes of
    that is a matter of time, and only the promises count. */
class Judgement
{
public:
    Judgement (const FaultedUpdate& update, const FaultScript& faults);

    std::vector<std::string> broken; ///< the promises, for people; empty is good

    /** How long the update takes by the limits of the protocol alone; nothing if its faults leave that open. */
    std::optional<std::chrono::milliseconds> byProtocol;

private:
    void expect (bool isSo, const std::string& promise);
    void judgeOutcome (const FaultedUpdate& update);
    void compare (const FaultedUpdate& update, const FaultScript& faults);
};

} // namespace wqv
