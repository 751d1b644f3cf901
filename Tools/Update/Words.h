// SPDX-License-Identifier: GPL-3.0-or-later
// What wqv-update says: causes, outcomes, devices, in English and as the names that JSON uses.

#pragma once

#include "DeviceRoster.h"
#include "UpdateFailure.h"

#include <optional>
#include <string>
#include <string_view>

namespace wqv
{

/** How the attempt to update one controller ended. */
enum class Result
{
    complete,
    failed,
    stopped,      ///< the user or the system ended the program
    declined,     ///< the user did not want it
    noController, ///< there is none, or it went away before the update began
    badPackage
};

/** A cause as a sentence without its full stop: "no answer to block data (0xF3) for block 1, piece 40, came in ...". */
[[nodiscard]] std::string describe (const UpdateFailure& failure);

/** Its cause as one word, camel case. */
[[nodiscard]] std::string_view nameOf (UpdateFailure::Cause cause);

/** The headline of an outcome. */
[[nodiscard]] std::string_view headlineOf (Result result);
[[nodiscard]] std::string_view nameOf (Result result);

/** The names that docs/protocol.md has: "block data". */
[[nodiscard]] std::string_view nameOf (RequestCode request);
[[nodiscard]] std::string_view nameOf (ResponseCode response);

/** What a device is to the updater: taken, or why not. @param chosen  the one that it has taken */
[[nodiscard]] std::string describe (const DeviceRoster::Entry& entry, const std::optional<HidDevice>& chosen);

/** "free", "denied", "inUse", "gone", or "notTried". */
[[nodiscard]] std::string_view nameOf (std::optional<HidService::OpenResult> opened);

/** Why no controller is recognised, by what is attached. */
[[nodiscard]] std::string reasonForNone (const std::vector<DeviceRoster::Entry>& entries);

/** A number in hexadecimal, at least so many digits: 0x0A, or A without the prefix. */
[[nodiscard]] std::string hexadecimal (std::int64_t number, int digits);

} // namespace wqv
