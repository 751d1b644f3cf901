// SPDX-License-Identifier: GPL-3.0-or-later
// Why an update failed: the cause, the request, the answer.

#pragma once

#include "Requests.h"
#include "Responses.h"

#include <chrono>
#include <cstdint>

namespace wqv
{

/** The first thing that went wrong in an update. */
struct UpdateFailure
{
    enum class Cause : std::uint8_t
    {
        none,        ///< nothing went wrong
        noData,      ///< the blocks of the package hold no data: nothing was sent
        notSent,     ///< the system did not take the request, though the controller was there, and no answer came
        noAnswer,    ///< no answer came within the limit
        wrongAnswer, ///< the controller answered something else than it should have
        interrupted, ///< the controller went away, or came back, when its answer was awaited, and took no request since
        stopped      ///< the update was asked to end
    };

    Cause cause = Cause::none;

    /** What was sent, or with Cause::stopped was to be sent. Of several equal ones the last counts. */
    RequestCode request = RequestCode::enterUpdateMode;

    std::uint8_t block = 0;  ///< the number of the block that blockHeader and blockData are about, from 1; else 0
    std::uint32_t piece = 0; ///< the piece of the block that blockData is about, from 0

    /** The answer that lets the update go on. With blockAccepted, blockVerified would have done too. */
    ResponseCode expected = ResponseCode::none;

    ResponseCode received = ResponseCode::none; ///< with Cause::wrongAnswer: what came
    std::uint8_t value = 0;                     ///< and its byte 1

    /** For this answer, since the one before it or the request; with Cause::interrupted, until the interruption. */
    std::chrono::milliseconds waited {};

    [[nodiscard]] bool operator== (const UpdateFailure&) const = default;
};

} // namespace wqv
