// SPDX-License-Identifier: GPL-3.0-or-later
// The mailbox in which the message thread leaves the controller's answers for the worker.

#pragma once

#include "UpdateSequence.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <span>

namespace wqv
{

/** The last input report and the signal that it came, under one lock.

    wait() takes report and signal in one step. So a removal that is signalled just before a wait is not lost; and of
    two answers that come before a wait, that wait returns the later one, and no signal is left for the next wait. An
    answer and a removal count in the order of their arrival.

    Any thread may call anything.
*/
class ResponseMailbox
{
public:
    /** Forgets signals of the time before the update starts. The last report stays. */
    void reset();

    /** Takes over an input report. The bytes beyond it keep what they held. An 0xF6 that comes while another answer was not
        taken yet is late, and does not take its place: the next wait returns that answer, and the wait after it the 0xF6.
        @param report  at most 1024 bytes are taken
        @param wake    whether the worker is to hear of it */
    void store (std::span<const std::uint8_t> report, bool wake);

    /** The controller went away or came back: zeroes the report and wakes the worker. If an answer came before this and
        was not taken yet, the next wait returns that answer, and the wait after it this interruption. An answer that
        comes later does not hide the interruption from the worker's next wait. */
    void interrupt();

    /** The message thread has read all that there was to read when a wait asked for this. */
    void turned();

    /** Ends the wait in progress, and every later one at once, as an interruption does. */
    void stop();

    /** Waits for a signal and takes it.
        @param limit       how long to wait
        @param askForTurn  called on this thread, without the lock, when the limit is over: the wait then goes on until
                           turned(), but for a second at most, since an answer may lie unread
        @returns the first two bytes of the last report; all zero after an interruption */
    [[nodiscard]] Answer wait (std::chrono::milliseconds limit, const std::function<void()>& askForTurn);

private:
    [[nodiscard]] Answer lastReport() const;
    void keepAnswer();

    std::mutex lock;
    std::condition_variable event;
    std::array<std::uint8_t, 1024> responseBuffer {};
    std::optional<Answer> keptAnswer; ///< the next wait returns it, whatever came behind it
    bool signalled = false;
    bool interrupted = false;
    bool stopped = false;
    bool hasTurned = false;
};

} // namespace wqv
