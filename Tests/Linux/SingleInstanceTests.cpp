// SPDX-License-Identifier: GPL-3.0-or-later
// Which of several instances is the first, and what the others are told: on a display that on-display makes.

#include "SingleInstance.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <poll.h>
#include <thread>
#include <vector>

namespace wqv
{
namespace
{

using namespace std::chrono_literals;
using Start = SingleInstance::Start;

TEST (SingleInstanceTests, IsOneOfAllThatStartAtTheSameTime)
{
    constexpr int count = 8;

    for (int round = 0; round < 50; ++round)
    {
        std::atomic<int> firsts = 0;
        std::atomic<int> others = 0;
        std::vector<std::jthread> starts;
        starts.reserve (count);

        for (int i = 0; i < count; ++i)
        {
            starts.emplace_back (
                [&]
                {
                    SingleInstance instance ("test");

                    if (const auto outcome = instance.start(); outcome != Start::first)
                    {
                        EXPECT_EQ (outcome, Start::raised);
                        ++others;
                        return;
                    }

                    int raises = 0;

                    for (++firsts; firsts == 1 && others < count - 1; std::this_thread::yield())
                        instance.answer ([&] { ++raises; });

                    EXPECT_GE (raises, 1);
                });
        }

        starts.clear();
        EXPECT_EQ (firsts, 1);
    }
}

TEST (SingleInstanceTests, FollowsOneThatLeavesWithoutAnAnswer)
{
    auto leaving = std::make_unique<SingleInstance> ("test");
    SingleInstance waiting ("test");
    auto outcome = Start::noAnswer;
    ASSERT_EQ (leaving->start(), Start::first);

    {
        const std::jthread start ([&] { outcome = waiting.start(); });
        pollfd asked { .fd = leaving->descriptor(), .events = POLLIN, .revents = 0 };
        EXPECT_EQ (poll (&asked, 1, -1), 1);
        leaving.reset();
    }

    EXPECT_EQ (outcome, Start::first);
    EXPECT_EQ (SingleInstance ("test").start (0ms), Start::noAnswer);
}

} // namespace
} // namespace wqv
