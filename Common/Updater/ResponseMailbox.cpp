// SPDX-License-Identifier: GPL-3.0-or-later
// One lock, one condition, one report.

#include "ResponseMailbox.h"

#include <algorithm>
#include <utility>

namespace wqv
{

void ResponseMailbox::reset()
{
    const std::scoped_lock guard (lock);
    signalled = false;
    interrupted = false;
}

void ResponseMailbox::store (std::span<const std::uint8_t> report, bool wake)
{
    const std::scoped_lock guard (lock);
    std::copy_n (report.begin(), std::min (report.size(), responseBuffer.size()), responseBuffer.begin());
    signalled = signalled || wake;
    event.notify_one();
}

void ResponseMailbox::interrupt()
{
    const std::scoped_lock guard (lock);
    responseBuffer.fill (0);
    signalled = true;
    interrupted = true;
    event.notify_one();
}

void ResponseMailbox::stop()
{
    const std::scoped_lock guard (lock);
    stopped = true;
    event.notify_one();
}

Answer ResponseMailbox::wait (std::chrono::milliseconds limit)
{
    std::unique_lock guard (lock);
    event.wait_for (guard, limit, [this] { return signalled || stopped; });

    if (std::exchange (interrupted, false) || stopped)
    {
        signalled = false;
        return { .signalled = true };
    }

    return { .signalled = std::exchange (signalled, false),
             .code = static_cast<ResponseCode> (responseBuffer[0]),
             .value = responseBuffer[1] };
}

} // namespace wqv
