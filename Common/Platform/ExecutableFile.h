// SPDX-License-Identifier: GPL-3.0-or-later
// The file of the running program, which each system finds in its own way.

#pragma once

#include <filesystem>

namespace wqv
{

/** The file of the running executable, however it was started: links are resolved, and neither the working directory nor
    PATH matters. Empty if the system does not tell, which a line on standard error then says. */
[[nodiscard]] std::filesystem::path getExecutableFile();

} // namespace wqv
