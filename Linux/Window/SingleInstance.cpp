// SPDX-License-Identifier: GPL-3.0-or-later
// To bind a name is one step for the kernel, so whoever can is the first; all others connect to it.

#include "SingleInstance.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace wqv
{
namespace
{

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/** A stranger may hold some of them. */
constexpr int nameCount = 4;

/** How often, and how far apart, a name is tried that is held while nobody listens there. An instance that starts
    listens at once after it has taken the name; only a stranger never does. */
constexpr int unheardTries = 25;
constexpr auto unheardPause = 10ms;

/** How long to queue at a name; longer than an instance needs to accept those before. */
constexpr timeval queueLimit { .tv_sec = 0, .tv_usec = 250'000 };

/** How many are answered at a time: a flood of them takes no more descriptors. */
constexpr int answersAtOnce = 16;

/** Closes with its owner. */
class Socket
{
public:
    explicit Socket (int descriptorToUse = -1) : descriptor (descriptorToUse) {}
    Socket (Socket&& other) noexcept : descriptor (other.release()) {}
    Socket& operator= (Socket&& other) = delete;

    ~Socket()
    {
        if (descriptor >= 0)
            close (descriptor);
    }

    [[nodiscard]] int get() const { return descriptor; }
    int release() { return std::exchange (descriptor, -1); }

private:
    int descriptor;
};

Socket makeSocket (int flags)
{
    return Socket (socket (AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | flags, 0));
}

/** Calls bind or connect with a name that begins with a zero byte, which makes it one without a file. */
int withAddress (int (*call) (int, const sockaddr*, socklen_t), int socket, const std::string& name)
{
    sockaddr_un address {};
    address.sun_family = AF_UNIX;

    // Of a name that is too long the end counts, where displays differ.
    const auto size = std::min (name.size(), sizeof (address.sun_path) - 1);
    std::copy_n (name.end() - static_cast<std::ptrdiff_t> (size), size, address.sun_path + 1);

    return call (socket,
                 reinterpret_cast<const sockaddr*> (&address),
                 static_cast<socklen_t> (offsetof (sockaddr_un, sun_path) + 1 + size));
}

/** The server that a display is of: one server has several names, and several screens. */
std::string_view serverOf (std::string_view display)
{
    if (display.empty())
        return ":0";

    if (display.starts_with ("unix:"))
        display.remove_prefix (4);

    return display.substr (0, display.find ('.', display.rfind (':')));
}

/** Waits until there is something to read. */
bool isReadable (int descriptor, Clock::time_point end)
{
    for (;;)
    {
        const auto left = std::chrono::ceil<std::chrono::milliseconds> (end - Clock::now());
        pollfd awaited { .fd = descriptor, .events = POLLIN, .revents = 0 };
        const auto ready = poll (&awaited, 1, std::max (0, static_cast<int> (left.count())));

        if (ready >= 0 || errno != EINTR)
            return ready > 0;
    }
}

} // namespace

SingleInstance::SingleInstance (std::string_view programToUse, std::string_view displayToUse)
    : user (geteuid()), program (programToUse), display (serverOf (displayToUse))
{
}

SingleInstance::~SingleInstance()
{
    if (listener >= 0)
        close (listener);
}

SingleInstance::Start SingleInstance::start (std::chrono::milliseconds limit)
{
    const auto end = Clock::now() + limit;

    for (int number = 0; number < nameCount; ++number)
    {
        const auto name = nameOf (number);
        auto reply = Reply::ended;

        for (int asked = 0, unheard = 0; reply != Reply::stranger && unheard < unheardTries; ++asked)
        {
            if (take (name))
                return Start::first;

            reply = ask (name, end);

            if (reply == Reply::raised)
                return Start::raised;

            if (reply == Reply::none || (reply == Reply::ended && Clock::now() >= end))
                return Start::noAnswer;

            unheard += reply == Reply::unheard ? 1 : 0;

            if (asked > 0)
                poll (nullptr, 0, static_cast<int> (unheardPause.count()));
        }
    }

    return Start::unguarded;
}

std::string SingleInstance::nameOf (int number) const
{
    return program + "/" + std::to_string (user) + "/" + std::to_string (number) + "/" + display;
}

bool SingleInstance::take (const std::string& name)
{
    auto socket = makeSocket (SOCK_NONBLOCK);

    if (withAddress (bind, socket.get(), name) != 0 || listen (socket.get(), SOMAXCONN) != 0)
        return false;

    listener = socket.release();
    return true;
}

SingleInstance::Reply SingleInstance::ask (const std::string& name, Clock::time_point end) const
{
    const auto socket = makeSocket (0);
    setsockopt (socket.get(), SOL_SOCKET, SO_SNDTIMEO, &queueLimit, sizeof (queueLimit));

    if (withAddress (connect, socket.get(), name) != 0)
        return errno == ECONNREFUSED || errno == EINTR ? Reply::unheard : Reply::stranger;

    if (! isOurs (socket.get()))
        return Reply::stranger;

    if (! isReadable (socket.get(), end))
        return Reply::none;

    char byte = 0;
    return recv (socket.get(), &byte, 1, MSG_DONTWAIT) == 1 ? Reply::raised : Reply::ended;
}

void SingleInstance::answer (const std::function<void()>& raise) const
{
    std::vector<Socket> waiting;

    for (int accepted = 0; accepted < answersAtOnce; ++accepted)
    {
        Socket connection (accept4 (listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));

        if (connection.get() < 0)
            break;

        if (isOurs (connection.get()))
            waiting.push_back (std::move (connection));
    }

    if (waiting.empty())
        return;

    raise();

    for (const auto& connection : waiting)
        send (connection.get(), "", 1, MSG_NOSIGNAL);
}

bool SingleInstance::isOurs (int connection) const
{
    ucred peer {};
    socklen_t size = sizeof (peer);

    return getsockopt (connection, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == user;
}

} // namespace wqv
