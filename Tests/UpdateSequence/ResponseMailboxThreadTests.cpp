// SPDX-License-Identifier: GPL-3.0-or-later
// The mailbox between a worker and a device that answers on a thread of its own.

#include "ResponseMailbox.h"

#include <gtest/gtest.h>

#include <array>
#include <semaphore>
#include <thread>

namespace wqv
{
namespace
{

using namespace std::chrono_literals;

TEST (ResponseMailboxThreads, everyRequestGetsItsOwnAnswerOnce)
{
    constexpr int rounds = 5000;
    ResponseMailbox mailbox;
    std::counting_semaphore<> requests { 0 };

    std::thread device (
        [&]
        {
            for (int i = 0; i < rounds; ++i)
            {
                requests.acquire();

                for (const auto code : { ResponseCode::busy, ResponseCode::busy, ResponseCode::ready })
                    mailbox.store (std::array { static_cast<std::uint8_t> (code), static_cast<std::uint8_t> (i) },
                                   true);
            }
        });

    int strange = 0;

    for (int i = 0; i < rounds; ++i)
    {
        requests.release();
        Answer answer;

        do
        {
            answer = mailbox.wait (1h);
            strange += answer.signalled && answer.value == static_cast<std::uint8_t> (i) ? 0 : 1;
        }
        while (answer.code == ResponseCode::busy);

        strange += answer.code != ResponseCode::ready || mailbox.wait (0ms).signalled ? 1 : 0;
    }

    device.join();
    EXPECT_EQ (strange, 0);
}

TEST (ResponseMailboxThreads, everyEventEndsAWaitInProgress)
{
    constexpr int rounds = 3000;
    ResponseMailbox mailbox;
    std::binary_semaphore woken { 0 };

    std::thread worker (
        [&]
        {
            for (int i = 0; i <= rounds; ++i)
            {
                EXPECT_EQ (mailbox.wait (1h).code, i % 2 == 0 ? ResponseCode::none : ResponseCode::busy);
                woken.release();
            }
        });

    for (int i = 0; i < rounds; ++i)
    {
        // The worker may be waiting by now, or not yet.
        std::this_thread::yield();

        if (i % 2 == 0)
            mailbox.interrupt();
        else
            mailbox.store (std::array<std::uint8_t, 1> { 0xF7 }, true);

        woken.acquire();
    }

    std::this_thread::yield();
    mailbox.stop();
    worker.join();
}

} // namespace
} // namespace wqv
