// SPDX-License-Identifier: GPL-3.0-or-later
// The loop, and what it does for each thing that happens.

#include "ControllerBoard.h"

#include "Console.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace wqv
{
namespace
{

/** After this time a report that no host fetches is lost, and the controller unplugs without a look at it. */
constexpr std::chrono::seconds patience { 1 };

bool isTransient (int error)
{
    return error == EAGAIN || error == EINTR;
}

} // namespace

ControllerBoard::ControllerBoard (UsbGadget& gadgetToUse,
                                  SimulatedController& controllerToUse,
                                  std::size_t interfaceCount,
                                  std::size_t controllerInterface)
    : gadget (gadgetToUse),
      controller (controllerToUse),
      nodes (interfaceCount),
      controllerNode (nodes.at (controllerInterface))
{
}

std::string ControllerBoard::run (int signals, bool isAbsent)
{
    if (! isAbsent)
        happen ({ .kind = Event::Kind::plugIn });

    std::vector<pollfd> sources;

    while (! isOver)
    {
        // A descriptor of -1 is passed over.
        sources = { { .fd = signals, .events = POLLIN, .revents = 0 },
                    { .fd = inputHasEnded ? -1 : STDIN_FILENO, .events = POLLIN, .revents = 0 } };

        for (const auto& node : nodes)
        {
            const auto wanted = (takesReports ? POLLIN : 0) | (waitsForHost && &node == &controllerNode ? POLLOUT : 0);
            sources.push_back ({ .fd = node.handle(), .events = static_cast<short> (wanted), .revents = 0 });
        }

        if (poll (sources.data(), sources.size(), millisecondsToNextEvent()) < 0 && ! isTransient (errno))
            fail (std::string ("poll: ") + std::system_category().message (errno));

        if (sources[0].revents != 0)
            isOver = true;

        // What plugs in or out closes nodes, so their reports come first.
        for (std::size_t i = 0; i < nodes.size(); ++i)
            if ((sources[i + 2].revents & ~POLLOUT) != 0)
                readReport (nodes[i]);

        if (sources[1].revents != 0)
            readCommands();

        playEvents();
    }

    unplug();
    return failure;
}

void ControllerBoard::readCommands()
{
    std::array<char, 256> bytes {};
    const auto length = read (STDIN_FILENO, bytes.data(), bytes.size());

    if (length <= 0)
    {
        inputHasEnded = length == 0 || ! isTransient (errno);
        return;
    }

    input.append (bytes.data(), static_cast<std::size_t> (length));

    for (auto end = input.find ('\n'); end != std::string::npos; end = input.find ('\n'))
    {
        obey (std::string_view (input).substr (0, end));
        input.erase (0, end + 1);
    }
}

void ControllerBoard::obey (std::string_view command)
{
    if (command == "quit")
        isOver = true;
    else if (command == "plug" || command == "unplug")
    {
        // A controller that is about to come back of itself does not.
        std::erase_if (events, [] (const auto& next) { return next.second.kind == Event::Kind::plugIn; });
        happen ({ .kind = command == "plug" ? Event::Kind::plugIn : Event::Kind::unplug });
    }
    else
        print (STDERR_FILENO, "plug, unplug or quit, not \"" + std::string (command) + '"');
}

void ControllerBoard::readReport (const HidgNode& node)
{
    const auto report = node.read();

    if (! report)
    {
        if (! isTransient (errno))
            fail (std::string ("the port has gone: ") + std::system_category().message (errno));

        return;
    }

    auto reaction = controller.receive (*report);
    const auto now = Clock::now();

    // The kernel takes a few more in its place, and then the host's writes wait.
    takesReports = reaction.takesMore;

    for (auto& event : reaction.events)
        events.emplace (now + event.delay, std::move (event));
}

void ControllerBoard::playEvents()
{
    waitsForHost = false;

    while (! isOver && ! events.empty() && events.begin()->first <= Clock::now())
    {
        const auto first = events.begin();

        // An unplug takes a report along that the host has not fetched.
        if (isPluggedIn && ! controllerNode.isFetched() && Clock::now() < first->first + patience)
        {
            waitsForHost = true;
            return;
        }

        const auto event = std::move (first->second);
        events.erase (first);
        happen (event);
    }
}

void ControllerBoard::happen (const Event& event)
{
    switch (event.kind)
    {
        case Event::Kind::report:
            if (isPluggedIn && controllerNode.write (event.report))
                controller.happens (event);

            break;

        case Event::Kind::unplug:
            if (isPluggedIn)
            {
                controller.happens (event);
                unplug();
            }

            break;

        case Event::Kind::plugIn:
            if (! isPluggedIn)
            {
                controller.happens (event);
                plugIn();
            }

            break;
    }
}

void ControllerBoard::plugIn()
{
    if (const auto problem = gadget.plugIn (controller.versionNumber()); ! problem.empty())
        return fail (problem);

    isPluggedIn = true;
    takesReports = true;

    for (std::size_t i = 0; i < nodes.size(); ++i)
        if (const auto name = "/dev/" + gadget.nodeOf (i); ! nodes[i].open (name))
            return fail ("cannot open " + name + ": " + std::system_category().message (errno));
}

void ControllerBoard::unplug()
{
    // Closed first: the kernel takes the nodes away.
    for (auto& node : nodes)
        node.close();

    gadget.unplug();
    isPluggedIn = false;

    // What it had yet to say is lost.
    std::erase_if (events, [] (const auto& next) { return next.second.kind != Event::Kind::plugIn; });
}

void ControllerBoard::fail (const std::string& problem)
{
    failure = problem;
    isOver = true;
}

int ControllerBoard::millisecondsToNextEvent() const
{
    if (events.empty())
        return -1;

    const auto time = events.begin()->first + (waitsForHost ? patience : std::chrono::seconds {});
    const auto remaining = std::chrono::ceil<std::chrono::milliseconds> (time - Clock::now());
    return static_cast<int> (std::max<std::chrono::milliseconds::rep> (remaining.count(), 0));
}

} // namespace wqv
