// SPDX-License-Identifier: GPL-3.0-or-later
// The mailbox for the controller's answers: storing one, interrupting, waiting.

#include "ResponseMailbox.h"

#include <algorithm>
#include <utility>

namespace wqv
{
namespace
{

/** A message thread that has not read anything in this time stands still: waiting longer is of no use. */
constexpr std::chrono::seconds longestTurn { 1 };

} // namespace

void ResponseMailbox::reset()
{
    const std::scoped_lock guard (lock);
    keptAnswer.reset();
    signalled = false;
    interrupted = false;
}

void ResponseMailbox::store (std::span<const std::uint8_t> report, bool wake)
{
    const std::scoped_lock guard (lock);
    const auto isModeAnswer = ! report.empty() && static_cast<ResponseCode> (report[0]) == ResponseCode::updateMode;

    if (isModeAnswer && wake && lastReport().code != ResponseCode::updateMode)
        keepAnswer();

    std::copy_n (report.begin(), std::min (report.size(), responseBuffer.size()), responseBuffer.begin());
    signalled = signalled || wake;
    event.notify_one();
}

void ResponseMailbox::interrupt()
{
    const std::scoped_lock guard (lock);

    keepAnswer();
    responseBuffer.fill (0);
    signalled = true;
    interrupted = true;
    event.notify_one();
}

void ResponseMailbox::turned()
{
    const std::scoped_lock guard (lock);
    hasTurned = true;
    event.notify_one();
}

void ResponseMailbox::stop()
{
    const std::scoped_lock guard (lock);
    stopped = true;
    event.notify_one();
}

Answer ResponseMailbox::wait (std::chrono::milliseconds limit, const std::function<void()>& askForTurn)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    std::unique_lock guard (lock);
    const auto isOver = [this] { return signalled || stopped; };

    if (! event.wait_until (guard, end, isOver))
    {
        hasTurned = false;
        guard.unlock();
        askForTurn();
        guard.lock();
        event.wait_for (guard, longestTurn, [&] { return isOver() || hasTurned; });
    }

    auto answer = lastReport();
    answer.signalled = signalled || stopped;

    if (const auto before = std::exchange (keptAnswer, {}); before && ! stopped)
    {
        answer = *before; // and what came behind it stays for the next wait
    }
    else
    {
        if (std::exchange (interrupted, false) || stopped)
            answer = { .signalled = true, .interrupted = true };

        signalled = false;
    }

    answer.remaining =
        std::max (std::chrono::floor<std::chrono::milliseconds> (end - std::chrono::steady_clock::now()), {});
    return answer;
}

Answer ResponseMailbox::lastReport() const
{
    return { .signalled = true, .code = static_cast<ResponseCode> (responseBuffer[0]), .value = responseBuffer[1] };
}

/** Sets the last report aside before another takes its place, if it is an answer that no wait has taken. Of two such
    answers the later one is kept, unless that is a late 0xF6. */
void ResponseMailbox::keepAnswer()
{
    const auto answer = lastReport();
    const auto isLate = keptAnswer && answer.code == ResponseCode::updateMode;

    if (signalled && ! interrupted && ! isLate)
        keptAnswer = answer;
}

} // namespace wqv
