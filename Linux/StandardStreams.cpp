// SPDX-License-Identifier: GPL-3.0-or-later
// Closed standard streams become /dev/null, opened the wrong way round.

#include "StandardStreams.h"

#include <fcntl.h>
#include <tuple>
#include <unistd.h>

namespace wqv
{

void openStandardStreams()
{
    // What is opened takes the lowest place that is free.
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream)
        if (fcntl (stream, F_GETFD) < 0)
            std::ignore = open ("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

} // namespace wqv
