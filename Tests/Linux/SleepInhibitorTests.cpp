// SPDX-License-Identifier: GPL-3.0-or-later
// The requests to stay awake and on, made to a logind that does as the test says.

#include "MessageLoop.h"
#include "SleepInhibitor.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <systemd/sd-bus.h>
#include <unistd.h>
#include <utility>

namespace wqv
{
namespace
{

/** One end of a system bus with logind behind it, for one connection. Its descriptors end with the process. */
class FakeLogind
{
public:
    /** @param refusedToUse  what it refuses a lock for */
    explicit FakeLogind (const std::string& path, std::string refusedToUse = {}) : refused (std::move (refusedToUse))
    {
        sockaddr_un address { .sun_family = AF_UNIX, .sun_path = {} };
        path.copy (address.sun_path, sizeof (address.sun_path) - 1);
        EXPECT_EQ (bind (listener, reinterpret_cast<const sockaddr*> (&address), sizeof (address)), 0);
        EXPECT_EQ (listen (listener, 1), 0);
        EXPECT_EQ (pipe (lock), 0);
    }

    /** Answers until the other end hangs up, which lives by the message loop. */
    void serve (const MessageLoop& loop)
    {
        sd_bus* bus = nullptr;
        const auto connection = accept (listener, nullptr, nullptr);

        sd_bus_new (&bus);
        sd_bus_set_fd (bus, connection, connection);
        sd_bus_set_server (bus, 1, {});
        sd_bus_set_anonymous (bus, 1);
        sd_bus_negotiate_fds (bus, 1);
        sd_bus_add_filter (bus, nullptr, &FakeLogind::answer, this);
        sd_bus_start (bus);

        while (sd_bus_process (bus, nullptr) >= 0 && sd_bus_is_open (bus) > 0)
            loop.drain();

        sd_bus_flush_close_unref (bus);
        close (lock[1]);
    }

    /** Whether somebody has a descriptor that stands for a lock. */
    [[nodiscard]] bool isHeld() const
    {
        pollfd end { .fd = lock[0], .events = POLLIN, .revents = 0 };
        return poll (&end, 1, 0) == 0;
    }

    std::string asked; ///< the arguments

private:
    static int answer (sd_bus_message* call, void* context, sd_bus_error* /*error*/)
    {
        auto& logind = *static_cast<FakeLogind*> (context);

        if (sd_bus_message_is_method_call (call, "org.freedesktop.DBus", "Hello") > 0)
            return sd_bus_reply_method_return (call, "s", ":1.1");

        if (sd_bus_message_is_method_call (call, "org.freedesktop.login1.Manager", "Inhibit") <= 0)
            return 0;

        const char* arguments[4] {};
        sd_bus_message_read (call, "ssss", &arguments[0], &arguments[1], &arguments[2], &arguments[3]);

        for (const auto* const argument : arguments)
            logind.asked += std::string (argument) + "|";

        return logind.refused == arguments[0] ? sd_bus_reply_method_errorf (call, SD_BUS_ERROR_ACCESS_DENIED, "Not you")
                                              : sd_bus_reply_method_return (call, "h", logind.lock[1]);
    }

    const std::string refused;
    const int listener = socket (AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int lock[2] {};
};

struct SleepInhibitorTests : testing::Test
{
    SleepInhibitorTests()
    {
        // NOLINTNEXTLINE (concurrency-mt-unsafe): no other thread is there yet
        setenv ("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + path).c_str(), 1);
    }

    TemporaryFolder folder;
    std::string path = folder.path ("bus").string();
    MessageLoop loop;
};

TEST_F (SleepInhibitorTests, holdsTheLocksThatItIsGivenWhileItLives)
{
    const std::string begin = "wqv_platform_tests: the machine may ";
    const std::string end = " during the update: Not you\n";

    const std::pair<std::string, std::string> refusals[] {
        { "", "" },
        { "sleep:idle:handle-lid-switch", begin + "fall asleep" + end },
        { "shutdown", begin + "be turned off" + end },
    };

    for (const auto& [refused, complaint] : refusals)
    {
        SCOPED_TRACE (refused);
        std::filesystem::remove (path);
        FakeLogind logind (path, refused);
        testing::internal::CaptureStderr();

        {
            const SleepInhibitor inhibitor ("Who", "Why");
            logind.serve (loop);
            EXPECT_EQ (logind.asked, "sleep:idle:handle-lid-switch|Who|Why|block|shutdown|Who|Why|block|");
            EXPECT_TRUE (logind.isHeld());
        }

        EXPECT_FALSE (logind.isHeld());
        EXPECT_EQ (testing::internal::GetCapturedStderr(), complaint);
    }
}

TEST_F (SleepInhibitorTests, doesWithoutABusAndWithoutAnAnswer)
{
    testing::internal::CaptureStderr();
    const SleepInhibitor alone ("Who", "Why");
    EXPECT_NE (testing::internal::GetCapturedStderr(), "");

    const FakeLogind logind (path);
    static_cast<void> (SleepInhibitor ("Who", "Why"));
    loop.drain();
}

} // namespace
} // namespace wqv
