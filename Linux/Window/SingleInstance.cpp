// SPDX-License-Identifier: GPL-3.0-or-later
// A selection of the X server's: its owner is the first instance, and a request to convert it asks to raise the window.

#include "SingleInstance.h"

#include <X11/Xlib.h>
#include <array>
#include <climits>
#include <cstdlib>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace wqv
{

struct SingleInstance::Connection
{
    Connection (Display* displayToUse, const std::string& name)
        : display (displayToUse),
          selection (XInternAtom (display, name.c_str(), False)),
          window (XCreateSimpleWindow (display, XDefaultRootWindow (display), 0, 0, 1, 1, 0, 0, 0))
    {
    }

    ~Connection() { XCloseDisplay (display); }

    Connection (const Connection&) = delete;
    Connection& operator= (const Connection&) = delete;

    [[nodiscard]] bool take() const
    {
        XGrabServer (display); // or somebody else could take it after the look
        const auto isFree = XGetSelectionOwner (display, selection) == None;

        if (isFree)
            XSetSelectionOwner (display, selection, window, CurrentTime);

        XUngrabServer (display);
        XFlush (display);
        return isFree;
    }

    /** Whether the owner raises its window at once. The server passes the question on to it; without an owner it refuses. */
    [[nodiscard]] bool ask() const
    {
        constexpr int milliseconds = 50;
        pollfd incoming { .fd = XConnectionNumber (display), .events = POLLIN, .revents = 0 };
        XEvent event;

        // Sends what is to be sent too, and may find that Xlib has read the answer while it did so.
        const auto isHere = [&] { return XCheckTypedEvent (display, SelectionNotify, &event) != False; };

        XConvertSelection (display, selection, selection, selection, window, CurrentTime);
        return (isHere() || (poll (&incoming, 1, milliseconds) > 0 && isHere())) && event.xselection.property != None;
    }

    Display* const display;
    const Atom selection;
    const Window window;
};

SingleInstance::SingleInstance (const std::string& program)
{
    const auto* name = std::getenv ("DISPLAY"); // NOLINT (concurrency-mt-unsafe): nothing changes it

    if (name == nullptr || *name == '\0')
        name = ":0"; // as JUCE does (7.0.5, 8.0.6)

    auto* const display = XOpenDisplay (name);

    if (display == nullptr)
        return;

    // A program on another machine may show its window here too.
    std::array<char, HOST_NAME_MAX + 1> host {};
    gethostname (host.data(), host.size());

    // Whoever is to be answered may have gone.
    XSetErrorHandler ([] (Display*, XErrorEvent*) { return 0; });
    connection = std::make_unique<Connection> (display, program + "/" + std::to_string (geteuid()) + "@" + host.data());
}

SingleInstance::~SingleInstance() = default;

SingleInstance::Start SingleInstance::start (std::chrono::milliseconds limit)
{
    using Clock = std::chrono::steady_clock;

    // Asked again and again, since the owner may have become another one.
    for (const auto end = Clock::now() + limit; connection != nullptr && ! connection->take();)
    {
        if (connection->ask())
            return Start::raised;

        if (Clock::now() >= end)
            return Start::noAnswer;
    }

    return Start::first;
}

int SingleInstance::descriptor() const
{
    return connection != nullptr ? XConnectionNumber (connection->display) : -1;
}

void SingleInstance::answer (const std::function<void()>& raise)
{
    auto* const display = connection->display;

    for (auto isRaised = false; XPending (display) > 0;)
    {
        XEvent event;
        XNextEvent (display, &event);

        if (event.type != SelectionRequest)
            continue;

        if (! std::exchange (isRaised, true))
            raise();

        const auto& request = event.xselectionrequest;
        XEvent reply {};
        reply.xselection.type = SelectionNotify;
        reply.xselection.requestor = request.requestor;
        reply.xselection.selection = request.selection;
        reply.xselection.property = request.property;
        XSendEvent (display, request.requestor, False, NoEventMask, &reply);
    }
}

} // namespace wqv
