// SPDX-License-Identifier: GPL-3.0-or-later
// Lines of wqv-controller for whoever reads them.

#pragma once

#include <string>

namespace wqv
{

/** Prints a line with the program's name before it, unless it would have to wait for that: a terminal that is stopped, or
    a pipe that nobody reads, must not hold up the one loop. Any thread.
    @param output  STDOUT_FILENO or STDERR_FILENO */
void print (int output, const std::string& line);

} // namespace wqv
