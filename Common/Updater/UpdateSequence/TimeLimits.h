// SPDX-License-Identifier: GPL-3.0-or-later
// How long the host waits for each answer, and why.

#pragma once

#include <chrono>

namespace wqv::timeLimits
{

using namespace std::chrono_literals;

/** The controller may be restarting into its update mode; this many requests of 10 s each give it 150 s. */
inline constexpr std::chrono::milliseconds enterUpdateMode = 10s;
inline constexpr int enterUpdateModeRequests = 15;

/** The controller only stores the summary. */
inline constexpr std::chrono::milliseconds summary = 10s;

/** The controller only prepares for the block. */
inline constexpr std::chrono::milliseconds blockHeader = 10s;

/** With a block's first piece the controller may erase all of the block's flash before it says anything. */
inline constexpr std::chrono::milliseconds blockData = 180s;

/** A controller that has reported a percentage is alive, and reports again within this time. Each report starts it
    anew. */
inline constexpr std::chrono::milliseconds nextProgress = 20s;

/** The controller answers a poll at once, even if only to say that it is busy. */
inline constexpr std::chrono::milliseconds finish = 10s;

/** Between two polls, and after the last: the controller is still writing, and each poll holds it up. */
inline constexpr std::chrono::milliseconds pollPause = 100ms;

/** Between two answers of the probe for automatic update mode. */
inline constexpr std::chrono::milliseconds autoUpdateMode = 1s;

} // namespace wqv::timeLimits
