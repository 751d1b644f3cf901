// SPDX-License-Identifier: GPL-3.0-or-later
// A line on standard error about something that is wrong.

#pragma once

#include <string_view>

namespace wqv
{

/** Writes the name of the program's file, a colon and the text as one line. Any thread; lines do not mix. */
void complain (std::string_view text);

} // namespace wqv
