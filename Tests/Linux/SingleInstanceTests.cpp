// SPDX-License-Identifier: GPL-3.0-or-later
// Who is the first of several instances, and what the others are told.

#include "SingleInstance.h"

#include <gtest/gtest.h>

#include <atomic>
#include <list>
#include <memory>
#include <poll.h>
#include <string>
#include <thread>
#include <tuple>
#include <unistd.h>
#include <vector>

namespace wqv
{
namespace
{

using namespace std::chrono_literals;
using Start = SingleInstance::Start;

/** A name that no other test program has. */
const std::string program = "wqv-test-" + std::to_string (getpid());

TEST (SingleInstance, isOneOfAllThatStartAtTheSameTime)
{
    constexpr int count = 8;

    for (int round = 0; round < 50; ++round)
    {
        std::atomic<int> firsts = 0;
        std::atomic<int> others = 0;
        int raises = 0; // by the first one alone
        std::vector<std::jthread> starts;
        starts.reserve (count);

        for (int i = 0; i < count; ++i)
        {
            starts.emplace_back (
                [&]
                {
                    SingleInstance instance (program, ":0");

                    if (instance.start() != Start::first)
                    {
                        ++others;
                        return;
                    }

                    for (++firsts; firsts == 1 && others < count - 1; std::this_thread::yield())
                        instance.answer ([&] { ++raises; });
                });
        }

        starts.clear();
        EXPECT_EQ (firsts, 1);
        EXPECT_EQ (others, count - 1);
        EXPECT_GE (raises, 1);
    }
}

TEST (SingleInstance, followsOneThatLeavesWithoutAnAnswer)
{
    auto leaving = std::make_unique<SingleInstance> (program, ":0");
    SingleInstance waiting (program, ":0");
    auto outcome = Start::noAnswer;
    ASSERT_EQ (leaving->start(), Start::first);

    {
        const std::jthread start ([&] { outcome = waiting.start(); });
        pollfd asked { .fd = leaving->descriptor(), .events = POLLIN, .revents = 0 };
        EXPECT_EQ (poll (&asked, 1, -1), 1);
        leaving.reset();
    }

    EXPECT_EQ (outcome, Start::first);
}

TEST (SingleInstance, isOneADisplay)
{
    SingleInstance instance (program, "");
    ASSERT_EQ (instance.start(), Start::first);

    for (const auto& [display, expected] : { std::pair (":0.1", Start::noAnswer),
                                             std::pair ("unix:0.0", Start::noAnswer),
                                             std::pair (":1", Start::first),
                                             std::pair ("host.name:0", Start::first) })
        EXPECT_EQ (SingleInstance (program, display).start (0ms), expected) << display;
}

TEST (SingleInstance, isNeitherBlockedNorRaisedByStrangers)
{
    constexpr uid_t nobody = 65534;
    constexpr std::size_t names = 4;

    if (geteuid() != 0)
        GTEST_SKIP() << "only root can be another user";

    // An instance asks for the names of the user that made it; the kernel tells of it what it is as it takes one.
    const auto startAsStranger = [] (SingleInstance& instance)
    {
        ASSERT_EQ (seteuid (nobody), 0);
        std::ignore = instance.start (0ms);
        ASSERT_EQ (seteuid (0), 0);
    };

    std::list<SingleInstance> strangers;

    for (std::size_t count = 0; count <= names; ++count)
    {
        {
            SingleInstance instance (program, ":0");
            EXPECT_EQ (instance.start(), count < names ? Start::first : Start::unguarded) << count;

            SingleInstance asking (program, ":0");
            startAsStranger (asking);
            bool isRaised = false;
            instance.answer ([&] { isRaised = true; });
            EXPECT_FALSE (isRaised);
        }

        startAsStranger (strangers.emplace_back (program, ":0"));
    }
}

} // namespace
} // namespace wqv
