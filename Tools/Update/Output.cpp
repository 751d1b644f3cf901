// SPDX-License-Identifier: GPL-3.0-or-later
// The queue of texts, and the thread that writes them.

#include "Output.h"

#include <chrono>
#include <cstdlib>
#include <iostream>

namespace wqv
{

Output::Output() : thread ([this] { run(); }) {}

Output::~Output()
{
    constexpr std::chrono::seconds patience { 2 };

    {
        std::unique_lock guard (lock);
        isEnding = true;
        changed.notify_all();

        if (! changed.wait_for (guard, patience, [this] { return isOver; }))
            std::_Exit (exitStatus);
    }

    thread.join();
}

void Output::print (std::string text)
{
    add (std::cout, std::move (text));
}

void Output::printError (std::string text)
{
    add (std::cerr, std::move (text));
}

void Output::add (std::ostream& stream, std::string text)
{
    const std::scoped_lock guard (lock);
    texts.emplace_back (&stream, std::move (text));
    changed.notify_all();
}

void Output::run()
{
    std::unique_lock guard (lock);

    while (! isEnding || ! texts.empty())
    {
        if (texts.empty())
        {
            changed.wait (guard);
            continue;
        }

        auto [stream, text] = std::move (texts.front());
        texts.pop_front();
        guard.unlock();
        *stream << text << std::flush;
        guard.lock();
    }

    isOver = true;
    changed.notify_all();
}

} // namespace wqv
