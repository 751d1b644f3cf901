// SPDX-License-Identifier: GPL-3.0-or-later
// Which file is written, and which is never replaced.

#include "OutputFile.h"

#include "FileReplacement.h"

#include <algorithm>
#include <optional>
#include <system_error>

namespace wqv
{
namespace
{

namespace fs = std::filesystem;

/** What lies at a place, links not followed; "not found" is no error. */
fs::file_status look (const fs::path& place, std::error_code& error)
{
    auto found = fs::symlink_status (place, error);

    if (found.type() == fs::file_type::not_found)
        error.clear();

    return found;
}

/** Follows links to their end, also to one where nothing is. */
fs::path behindLinks (fs::path place, std::error_code& error)
{
    constexpr int asManyAsTheSystemFollows = 40;

    for (int links = 0; links <= asManyAsTheSystemFollows; ++links)
    {
        const auto found = look (place, error);

        if (error || ! fs::is_symlink (found))
            return place;

        place = place.parent_path() / fs::read_symlink (place, error);
    }

    error = std::make_error_code (std::errc::too_many_symbolic_link_levels);
    return place;
}

/** Whether the file, or the link, at @p place is what @p name leads to. */
bool isNamed (const fs::path& place, const fs::file_status& found, const fs::path& name)
{
    std::error_code ignored;

    if (! fs::is_symlink (found))
        return fs::equivalent (place, name, ignored);

    return place.filename() == name.filename()
           && fs::equivalent ("." / place.parent_path(), "." / name.parent_path(), ignored);
}

} // namespace

std::string writeWholeFile (const fs::path& target,
                            Links links,
                            std::span<const std::uint8_t> bytes,
                            std::span<const fs::path> inputs)
{
    std::error_code error;
    const auto place = links == Links::follow ? behindLinks (target, error) : target;
    const auto old = error ? fs::file_status() : look (place, error);
    std::optional<fs::perms> permissions;

    if (! error && fs::exists (old))
    {
        const auto input = std::ranges::find_if (inputs, [&] (const auto& name) { return isNamed (place, old, name); });

        if (input != inputs.end())
            return target.string() + ": is the input file " + input->string() + ", which is never overwritten";

        if (! fs::is_regular_file (old) && ! fs::is_symlink (old))
            return target.string() + ": cannot be replaced: it is not a regular file";

        if (fs::is_regular_file (old))
            permissions = old.permissions() & fs::perms::all;
    }

    if (! error)
        error = replaceFile (place, permissions, bytes);

    return error ? target.string() + ": cannot be written: " + error.message() : std::string();
}

} // namespace wqv
