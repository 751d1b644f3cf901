// SPDX-License-Identifier: GPL-3.0-or-later
// The signals' handler, which writes a byte into a pipe that the message loop reads.

#include "TerminationSignals.h"

#include <juce_events/juce_events.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace wqv
{
namespace
{

constexpr std::array terminationSignalNumbers { SIGTERM, SIGHUP, SIGINT };

/** Where the handler writes: a handler has no other way to learn it. */
std::atomic<int> writeEnd { -1 };

void handleSignal (int /*number*/)
{
    const auto savedError = errno;
    const char byte = 0;

    // A full pipe already says what this byte would.
    if (write (writeEnd, &byte, 1) < 0)
        errno = savedError;
}

void setHandler (void (*handler) (int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;

    for (const auto number : terminationSignalNumbers)
        sigaction (number, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals (std::function<void()> onSignal)
{
    if (pipe2 (pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;

    juce::LinuxEventLoop::registerFdCallback (pipeEnds[0],
                                              [callback = std::move (onSignal)] (int descriptor)
                                              {
                                                  std::array<char, 16> bytes {};

                                                  if (read (descriptor, bytes.data(), bytes.size()) > 0)
                                                      callback();
                                              });
    writeEnd = pipeEnds[1];
    setHandler (handleSignal);
}

TerminationSignals::~TerminationSignals()
{
    if (pipeEnds[0] < 0)
        return;

    setHandler (SIG_IGN);
    juce::LinuxEventLoop::unregisterFdCallback (pipeEnds[0]);
    writeEnd = -1;

    for (const auto end : pipeEnds)
        close (end);
}

} // namespace wqv
