// SPDX-License-Identifier: GPL-3.0-or-later
// From a locale's name to a language of the table of languages.

#include "LocaleName.h"

#include <algorithm>

namespace wqv
{

std::string languageOfLocale (std::string_view locale)
{
    const auto name = locale.substr (0, locale.find_first_of (".@"));

    if (name == "C" || name == "POSIX")
        return {};

    std::string language (name);
    std::ranges::replace (language, '_', '-');

    // The table tells the two scripts of Chinese apart, most systems its regions.
    if (language == "zh-CN" || language == "zh-SG")
        language.insert (2, "-Hans");
    else if (language == "zh-TW" || language == "zh-HK" || language == "zh-MO")
        language.insert (2, "-Hant");

    return language;
}

} // namespace wqv
