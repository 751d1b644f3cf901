// SPDX-License-Identifier: GPL-3.0-or-later
// Puts a new file in the place of another in one step, by the system's own calls: only they wait for the disk.

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <system_error>

namespace wqv
{

/** Writes @p bytes into a new file beside @p place, flushes it to the disk and moves it to @p place, over what is there.
    @param permissions  what the new file gets, where the system has such permissions; nothing for those of any new file
    @returns an error if the place is still what it was; then nothing is left beside it
*/
[[nodiscard]] std::error_code replaceFile (const std::filesystem::path& place,
                                           std::optional<std::filesystem::perms> permissions,
                                           std::span<const std::uint8_t> bytes);

} // namespace wqv
