// SPDX-License-Identifier: GPL-3.0-or-later
// Printing, only where it is done at once.

#include "Console.h"

#include <fcntl.h>
#include <unistd.h>

namespace wqv
{

void print (int output, const std::string& line)
{
    const auto text = "wqv-controller: " + line + '\n';
    const auto flags = fcntl (output, F_GETFL);

    // The flag is shared with whoever has the same terminal or pipe, so it is set for this moment only. To ask by poll()
    // first is not enough: a terminal with room for one byte is ready, and then blocks.
    fcntl (output, F_SETFL, flags | O_NONBLOCK);
    [[maybe_unused]] const auto written = write (output, text.data(), text.size());
    fcntl (output, F_SETFL, flags);
}

} // namespace wqv
