// SPDX-License-Identifier: GPL-3.0-or-later
// From a locale's name to a language of the table of languages, for the systems that name locales.

#pragma once

#include <string>
#include <string_view>

namespace wqv
{

/** "zh_TW.UTF-8", "zh-TW" and "zh-Hant-TW" are "zh-Hant-TW", "de_DE@euro" is "de-DE".
    @returns an empty text for the locales that name no language, as "C" */
[[nodiscard]] std::string languageOfLocale (std::string_view locale);

} // namespace wqv
