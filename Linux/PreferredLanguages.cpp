// SPDX-License-Identifier: GPL-3.0-or-later
// From locale names to language identifiers.

#include "PreferredLanguages.h"

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

/** "zh_TW.UTF-8" is "zh-Hant-TW"; empty for the locales that name no language. */
std::string identifierOf (std::string_view locale)
{
    const auto name = locale.substr (0, locale.find_first_of (".@"));

    if (name == "C" || name == "POSIX")
        return {};

    std::string identifier (name);
    std::ranges::replace (identifier, '_', '-');

    if (identifier == "zh-CN" || identifier == "zh-SG")
        identifier.insert (2, "-Hans");
    else if (identifier == "zh-TW" || identifier == "zh-HK" || identifier == "zh-MO")
        identifier.insert (2, "-Hant");

    return identifier;
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
    std::vector<std::string> identifiers;
    const auto add = [&] (std::string_view name)
    {
        if (auto identifier = identifierOf (name); ! identifier.empty())
            identifiers.push_back (std::move (identifier));
    };

    while (! language.empty())
    {
        const auto end = std::min (language.find (':'), language.size());
        add (language.substr (0, end));
        language.remove_prefix (std::min (end + 1, language.size()));
    }

    add (locale);
    return identifiers;
}

} // namespace wqv
