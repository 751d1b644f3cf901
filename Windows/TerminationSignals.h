// SPDX-License-Identifier: GPL-3.0-or-later
// Ctrl-C, Ctrl-Break and the end of the console as calls on the message thread.

#pragma once

#include "MessageWindow.h"

#include <functional>

namespace wqv
{

/** Turns a console's Ctrl-C and Ctrl-Break, its closing, and the end of the session into a call on the message thread. One
    object at a time, made and deleted there. A program without a console hears nothing here: its window is told. */
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
    MessageWindow window;
};

} // namespace wqv
