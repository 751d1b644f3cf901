// SPDX-License-Identifier: GPL-3.0-or-later
// Paths as they come from a command line.

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace wqv
{

/** A path from UTF-8, which all arguments are in. A path of plain char cannot be made everywhere: one standard library (of
    GCC 12) takes every byte for a character. */
[[nodiscard]] inline std::filesystem::path pathFromUtf8 (std::string_view text)
{
    return std::u8string (text.begin(), text.end());
}

} // namespace wqv
