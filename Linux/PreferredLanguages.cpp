// SPDX-License-Identifier: GPL-3.0-or-later
// Reading LANGUAGE, LC_ALL, LC_MESSAGES and LANG.

#include "PreferredLanguages.h"

#include "LocaleName.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace wqv
{
namespace
{

std::string_view environment (const char* name)
{
    const auto* const value = std::getenv (name); // NOLINT (concurrency-mt-unsafe): nothing changes it meanwhile
    return value != nullptr ? value : "";
}

} // namespace

std::vector<std::string> preferredLanguages()
{
    constexpr std::array variables { "LC_ALL", "LC_MESSAGES", "LANG" };
    const auto* const set =
        std::ranges::find_if (variables, [] (const char* name) { return ! environment (name).empty(); });

    return preferredLanguagesFrom (environment ("LANGUAGE"), set != variables.end() ? environment (*set) : "");
}

std::vector<std::string> preferredLanguagesFrom (std::string_view language, std::string_view locale)
{
    std::vector<std::string> languages;
    const auto add = [&] (std::string_view name)
    {
        if (auto known = languageOfLocale (name); ! known.empty())
            languages.push_back (std::move (known));
    };

    while (! language.empty())
    {
        const auto end = std::min (language.find (':'), language.size());
        add (language.substr (0, end));
        language.remove_prefix (std::min (end + 1, language.size()));
    }

    add (locale);
    return languages;
}

} // namespace wqv
