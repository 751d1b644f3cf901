// SPDX-License-Identifier: GPL-3.0-or-later
// SIGTERM, SIGHUP and SIGINT as calls on the message thread.

#pragma once

#include <array>
#include <functional>

namespace wqv
{

/** Turns SIGTERM, SIGHUP and SIGINT into a call on the message thread. One object at a time, made and deleted there, while
    the message loop exists. JUCE (7.0.5, 8.0.6) handles SIGINT alone. */
class TerminationSignals
{
public:
    /** @param onSignal  called for each signal, on the message thread */
    explicit TerminationSignals (std::function<void()> onSignal);

    /** From here on the signals are ignored: the end is under way. */
    ~TerminationSignals();

    TerminationSignals (const TerminationSignals&) = delete;
    TerminationSignals& operator= (const TerminationSignals&) = delete;

private:
    std::array<int, 2> pipeEnds { -1, -1 };
};

} // namespace wqv
