// SPDX-License-Identifier: GPL-3.0-or-later
// One update with all threads, of a controller with faults, and all that came of it.

#pragma once

#include "FaultScript.h"
#include "UpdateFailure.h"
#include "UpdaterStatus.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace wqv
{

struct FaultedUpdate
{
    std::string script;
    FaultScript faults;

    UpdaterStatus_t status = UPDATER_STATUS_START; ///< as it stays, whatever comes after the outcome
    std::vector<UpdaterStatus_t> shown;
    UpdateFailure failure;
    bool isAwake = false;           ///< after the outcome
    std::int32_t deviceVersion = 0; ///< as the updater reads it from the controller, plugged in again after the outcome
    std::chrono::milliseconds duration {}; ///< from the start to the outcome
    bool sendsAfterEnd = false;
    std::string trace;

    // As the controller sees it.
    std::map<std::uint8_t, std::vector<std::uint8_t>> receivedBlocks;
    std::vector<std::string> hostErrors;
    bool isUpdated = false;
};

/** Updates a new virtual controller with the small package of the tests, waits for the outcome, and then tries to change it:
    by late answers, and by the controller being plugged in again. Message thread, one update at a time.
    @param script  one that parseFaultScript() takes */
[[nodiscard]] FaultedUpdate runUpdate (const std::string& script);

} // namespace wqv
