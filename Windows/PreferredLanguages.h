// SPDX-License-Identifier: GPL-3.0-or-later
// The languages that the user prefers, from the system's settings.

#pragma once

#include <string>
#include <vector>

namespace wqv
{

/** The user's preferred languages as canonical identifiers, most preferred first: language, script for Chinese, region,
    as in "de-DE" or "zh-Hant-TW". */
[[nodiscard]] std::vector<std::string> preferredLanguages();

} // namespace wqv
