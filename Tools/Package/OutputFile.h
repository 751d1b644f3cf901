// SPDX-License-Identifier: GPL-3.0-or-later
// Writes a file whole or not at all.

#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace wqv
{

/** What becomes of a link that has the target's name. */
enum class Links
{
    follow, ///< what it points to is written, even if it is not there yet
    replace ///< its place is taken; what it points to stays as it is
};

/** Writes @p bytes to @p target, whole or not at all: into a new file beside it, flushed to the disk, which then takes
    the target's place and has its permissions. Anything but a regular file or a link is never replaced.

    @param inputs  files that must survive: a target that is one of them, by whatever name, is refused
    @returns what went wrong, for people, naming the target; empty on success. After a failure the target is what it
             was, and nothing is left beside it
*/
[[nodiscard]] std::string writeWholeFile (const std::filesystem::path& target,
                                          Links links,
                                          std::span<const std::uint8_t> bytes,
                                          std::span<const std::filesystem::path> inputs);

} // namespace wqv
