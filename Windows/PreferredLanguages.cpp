// SPDX-License-Identifier: GPL-3.0-or-later
// Reading the list of display languages.

#include "PreferredLanguages.h"

#include "LocaleName.h"
#include "WideText.h"

#include <windows.h>

#include <string_view>

namespace wqv
{

std::vector<std::string> preferredLanguages()
{
    ULONG count = 0;
    ULONG length = 0;

    if (GetUserPreferredUILanguages (MUI_LANGUAGE_NAME, &count, nullptr, &length) == FALSE)
        return {};

    std::wstring names (length, L'\0');

    if (GetUserPreferredUILanguages (MUI_LANGUAGE_NAME, &count, names.data(), &length) == FALSE)
        return {};

    // Each name ends with a zero, and so does the list.
    std::vector<std::string> languages;
    std::wstring_view rest (names);

    while (! rest.empty() && rest.front() != L'\0')
    {
        const auto end = rest.find (L'\0');
        languages.push_back (languageOfLocale (narrow (rest.substr (0, end))));
        rest.remove_prefix (end == std::wstring_view::npos ? rest.size() : end + 1);
    }

    return languages;
}

} // namespace wqv
