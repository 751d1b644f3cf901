// SPDX-License-Identifier: GPL-3.0-or-later
// Opening, reading and writing /dev/hidgN.

#include "HidgNode.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace wqv
{
namespace
{

constexpr std::size_t largestReport = 1024;

} // namespace

HidgNode::HidgNode (HidgNode&& other) noexcept : descriptor (std::exchange (other.descriptor, -1)) {}

bool HidgNode::open (const std::filesystem::path& node)
{
    constexpr std::chrono::milliseconds pause { 10 };
    close();

    for (int tries = 0; tries < 200; ++tries)
    {
        descriptor = ::open (node.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);

        if (descriptor >= 0)
            return true;

        poll (nullptr, 0, pause.count());
    }

    return false;
}

void HidgNode::close()
{
    if (descriptor >= 0)
        ::close (std::exchange (descriptor, -1));
}

bool HidgNode::isFetched() const
{
    pollfd state { .fd = descriptor, .events = POLLOUT, .revents = 0 };
    return poll (&state, 1, 0) > 0;
}

std::optional<std::vector<std::uint8_t>> HidgNode::read() const
{
    std::vector<std::uint8_t> report (largestReport);
    const auto length = ::read (descriptor, report.data(), report.size());

    if (length < 0)
        return {};

    report.resize (static_cast<std::size_t> (length));
    return report;
}

bool HidgNode::write (std::span<const std::uint8_t> report) const
{
    return ::write (descriptor, report.data(), report.size()) >= 0;
}

} // namespace wqv
