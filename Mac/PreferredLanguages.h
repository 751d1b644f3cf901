// SPDX-License-Identifier: GPL-3.0-or-later
// The languages that the user prefers, from the system's preferences.

#pragma once

#include <string>
#include <vector>

namespace wqv
{

/** The user's preferred languages as canonical locale identifiers, most preferred first: "de_DE", "zh-Hant_TW". They are not
    changed: a Chinese one without a script stays so. One of 16 characters or more is not read: in its place stands the one before it
    again, or an empty text. None if the preferences do not have a list. */
[[nodiscard]] std::vector<std::string> preferredLanguages();

} // namespace wqv
