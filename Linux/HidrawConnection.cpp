// SPDX-License-Identifier: GPL-3.0-or-later
// Reading and writing reports of a hidraw node.

#include "HidrawConnection.h"

#include <juce_events/juce_events.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <unistd.h>
#include <utility>

namespace wqv
{
namespace
{

/** More than a full-speed interrupt endpoint carries in one transfer; the program's own requests have 128 bytes. */
constexpr std::size_t largestOutputReport = 1024;

} // namespace

HidrawConnection::HidrawConnection (int descriptorToUse) : descriptor (descriptorToUse) {}

HidrawConnection::~HidrawConnection()
{
    close (descriptor);
}

void HidrawConnection::startInput (ReportBuffer& reportBuffer,
                                   std::function<void (std::size_t)> onReport,
                                   std::function<void()> onHangUp)
{
    buffer = &reportBuffer;
    reportCallback = std::move (onReport);
    hangUpCallback = std::move (onHangUp);

    // JUCE (7.0.5, 8.0.6) may call once more after the callback was unregistered, so what it calls may be gone.
    juce::LinuxEventLoop::registerFdCallback (descriptor,
                                              [weak = weak_from_this()] (int)
                                              {
                                                  if (const auto connection = weak.lock())
                                                      connection->readPending();
                                              });
}

void HidrawConnection::stopInput()
{
    if (std::exchange (buffer, nullptr) != nullptr)
        juce::LinuxEventLoop::unregisterFdCallback (descriptor);
}

/** The kernel keeps 63 reports and drops further ones, so all that are there are taken. */
void HidrawConnection::readPending()
{
    // A callback may stop input, which ends the loop.
    while (buffer != nullptr)
    {
        const auto length = read (descriptor, buffer->data(), buffer->size());

        if (length > 0)
        {
            reportCallback (static_cast<std::size_t> (length));
        }
        else if (length < 0 && errno == EINTR)
        {
            continue;
        }
        else if (length < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
        {
            return;
        }
        else
        {
            // A descriptor in hang-up stays ready: the loop would spin.
            stopInput();
            hangUpCallback();
        }
    }
}

bool HidrawConnection::send (std::span<const std::uint8_t> report)
{
    std::array<std::uint8_t, 1 + largestOutputReport> bytes {}; // the report id, 0, comes first

    if (report.size() > largestOutputReport)
        return false;

    std::ranges::copy (report, bytes.begin() + 1);
    const auto length = report.size() + 1;

    for (;;)
    {
        const auto written = write (descriptor, bytes.data(), length);

        if (written >= 0 || errno != EINTR)
            return written == static_cast<ssize_t> (length);
    }
}

} // namespace wqv
