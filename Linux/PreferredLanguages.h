// SPDX-License-Identifier: GPL-3.0-or-later
// The languages that the user prefers, from the environment.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace wqv
{

/** The user's preferred languages as canonical identifiers, most preferred first: language, script for Chinese, region,
    as in "de-DE" or "zh-Hant-TW". From the environment: LANGUAGE, then the first that is set of LC_ALL, LC_MESSAGES and
    LANG. */
[[nodiscard]] std::vector<std::string> preferredLanguages();

/** The same for given values.
    @param language  as LANGUAGE: locale names separated by colons; may be empty
    @param locale    one locale name, as "zh_TW.UTF-8" or "de_DE@euro"; may be empty */
[[nodiscard]] std::vector<std::string> preferredLanguagesFrom (std::string_view language, std::string_view locale);

} // namespace wqv
