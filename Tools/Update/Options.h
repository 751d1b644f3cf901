// SPDX-License-Identifier: GPL-3.0-or-later
// The command line of wqv-update.

#pragma once

#include <filesystem>
#include <optional>

namespace wqv
{

struct Options
{
    std::filesystem::path package; ///< empty for the one beside the executable
    std::filesystem::path trace;   ///< empty for none
    bool yes = false;
    bool json = false;
    bool list = false;
    bool wait = false;
    bool repeat = false;
};

/** Nothing if the process is to end at once, with @p exitStatus: after --help, or a wrong command line. */
[[nodiscard]] std::optional<Options> readOptions (int argumentCount, const char* const* arguments, int& exitStatus);

} // namespace wqv
