// SPDX-License-Identifier: GPL-3.0-or-later
// Which promises an update has broken.

#pragma once

#include "FaultedUpdate.h"

#include <chrono>
#include <string>
#include <vector>

namespace wqv
{

struct Judgement
{
    std::vector<std::string> broken; ///< the promises, for people; empty is good

    /** The longest time in which the host did nothing, and how much it may take there. */
    std::chrono::microseconds longestWait {};
    std::chrono::milliseconds limit {};
};

/** Looks at what passed between host and controller, and not at what the host says of itself but for its outcome. */
[[nodiscard]] Judgement judge (const FaultedUpdate& update);

} // namespace wqv
