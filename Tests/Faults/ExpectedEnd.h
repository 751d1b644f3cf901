// SPDX-License-Identifier: GPL-3.0-or-later
// How an update with a fault has to end, by the rules of docs/protocol.md.

#pragma once

#include "FaultScript.h"
#include "Requests.h"
#include "UpdateFailure.h"

#include <chrono>
#include <cstddef>

namespace wqv
{

struct ExpectedEnd
{
    bool mayBeComplete = true;
    bool mayBeError = false;
    UpdateFailure::Cause cause = UpdateFailure::Cause::none; ///< of an error that has to be
    std::size_t request = 0;                                 ///< the request that it is about, counted from 1
};

/** The limits as docs/protocol.md has them, so that a change of the host's own is found. */
namespace protocolLimits
{

using namespace std::chrono_literals;

inline constexpr int modeRequests = 15;
inline constexpr std::chrono::milliseconds nextProgress = 20s;
inline constexpr std::chrono::milliseconds pollPause = 100ms;

} // namespace protocolLimits

/** How long the host waits for the first answer to a request. */
[[nodiscard]] std::chrono::milliseconds limitOf (RequestCode request);

/** Whether these faults make a controller say more than the one answer that the protocol allows for a request: what it does
    then is not the host's fault. */
[[nodiscard]] bool breaksTheOrder (const FaultScript& faults);

/** Of several faults the first that does harm decides. */
[[nodiscard]] ExpectedEnd expectedEnd (const FaultScript& faults);

} // namespace wqv
