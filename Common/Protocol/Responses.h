// SPDX-License-Identifier: GPL-3.0-or-later
// What the controller answers during an update; docs/protocol.md has the whole conversation.

#pragma once

#include <cstdint>

namespace wqv
{

/** Byte 0 of an input report. Where a comment names a percentage or a ModeStatus, that is byte 1. */
enum class ResponseCode : std::uint8_t
{
    none = 0x00,            ///< no answer: the host zeroes its copy when the controller goes away
    updateMode = 0xF6,      ///< to enterUpdateMode; a ModeStatus
    busy = 0xF7,            ///< to blockData: another answer follows; to finish: ask again; percentage
    summaryAccepted = 0xF8, ///< to packageSummary
    ready = 0xF9,           ///< to blockHeader, and to every piece but the last; percentage
    blockAccepted = 0xFB,   ///< to the last piece of a block; percentage
    updateFinished = 0xFC,  ///< to finish; percentage
    blockVerified = 0xFE    ///< to the last piece of a block, like blockAccepted; percentage
};

/** Byte 1 of ResponseCode::updateMode. Any other value is a refusal. */
enum class ModeStatus : std::uint8_t
{
    notYet = 0, ///< ask again
    entered = 1
};

} // namespace wqv
