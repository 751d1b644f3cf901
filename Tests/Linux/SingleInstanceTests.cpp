// SPDX-License-Identifier: GPL-3.0-or-later
// Who is the first of several instances, and what the others are told.

#include "SingleInstance.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <csignal>
#include <functional>
#include <memory>
#include <poll.h>
#include <span>
#include <string>
#include <sys/wait.h>
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

/** Another process, which does something and then waits to be killed. */
class Child
{
public:
    explicit Child (const std::function<void()>& task)
    {
        std::array<int, 2> ends {};
        EXPECT_EQ (pipe (ends.data()), 0);
        id = fork();

        if (id == 0)
        {
            task();
            close (ends[1]);
            pause();
            _exit (0);
        }

        // The end of the file says that the task is done.
        char byte = 0;
        close (ends[1]);
        EXPECT_EQ (read (ends[0], &byte, 1), 0);
        close (ends[0]);
    }

    ~Child() { kill(); }

    Child (const Child&) = delete;
    Child& operator= (const Child&) = delete;

    void kill()
    {
        if (id > 0 && ::kill (id, SIGKILL) == 0)
            waitpid (id, nullptr, 0);

        id = -1;
    }

private:
    pid_t id;
};

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

TEST (SingleInstance, followsOneThatWasKilled)
{
    SingleInstance instance (program, ":0");
    Child killed (
        []
        {
            static SingleInstance owner (program, ":0");
            std::ignore = owner.start();
        });

    EXPECT_EQ (instance.start (1ms), Start::noAnswer);
    killed.kill();
    EXPECT_EQ (instance.start(), Start::first);
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

TEST (SingleInstance, raisesOnceForAFloodAndKeepsNothingOpen)
{
    SingleInstance instance (program, ":0");
    ASSERT_EQ (instance.start(), Start::first);

    for (int i = 0; i < 10; ++i)
        EXPECT_EQ (SingleInstance (program, ":0").start (0ms), Start::noAnswer);

    const auto lowestFree = []
    {
        const auto descriptor = dup (STDIN_FILENO);
        close (descriptor);
        return descriptor;
    };

    int raises = 0;
    const auto before = lowestFree();

    instance.answer ([&] { ++raises; });
    instance.answer ([&] { ++raises; });

    EXPECT_EQ (raises, 1);
    EXPECT_EQ (lowestFree(), before);
}

TEST (SingleInstance, isOneADisplay)
{
    struct Case
    {
        std::string display;
        Start expected;
    };

    SingleInstance instance (program, "");
    ASSERT_EQ (instance.start(), Start::first);

    for (const auto& [display, expected] : { Case { ":0", Start::noAnswer },
                                             Case { ":0.1", Start::noAnswer },
                                             Case { "unix:0.0", Start::noAnswer },
                                             Case { ":1", Start::first },
                                             Case { "host.name:0", Start::first },
                                             Case { "host.other:0.0", Start::first },
                                             Case { std::string (200, 'x') + ":0", Start::first } })
        EXPECT_EQ (SingleInstance (program, display).start (0ms), expected) << display;
}

TEST (SingleInstance, isNeitherBlockedNorRaisedByStrangers)
{
    constexpr uid_t nobody = 65534;
    constexpr std::size_t names = 4;

    if (geteuid() != 0)
        GTEST_SKIP() << "only root can be another user";

    // The names are those of this user, and who takes them is another.
    const auto takeNames = [] (std::size_t count)
    {
        static std::array<SingleInstance, names> held {
            { { program, ":0" }, { program, ":0" }, { program, ":0" }, { program, ":0" } }
        };
        ASSERT_EQ (seteuid (nobody), 0);

        for (auto& instance : std::span (held).first (count))
            std::ignore = instance.start (0ms);
    };

    for (std::size_t count = 0; count <= names; ++count)
    {
        Child stranger ([&] { takeNames (count); });
        SingleInstance instance (program, ":0");
        EXPECT_EQ (instance.start(), count < names ? Start::first : Start::unguarded) << count;
    }

    SingleInstance instance (program, ":0");
    ASSERT_EQ (instance.start(), Start::first);
    Child stranger ([&] { takeNames (1); });

    bool isRaised = false;
    instance.answer ([&] { isRaised = true; });
    EXPECT_FALSE (isRaised);
}

} // namespace
} // namespace wqv
