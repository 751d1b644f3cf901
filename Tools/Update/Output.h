// SPDX-License-Identifier: GPL-3.0-or-later
// Text to standard output and standard error by a thread of its own.

#pragma once

#include <condition_variable>
#include <deque>
#include <iosfwd>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace wqv
{

/** Writes texts in their order. Whoever reads them may stop reading, as a terminal does after Ctrl-S: that then holds up
    only this object's thread, and never an update. Any thread. */
class Output
{
public:
    Output();

    /** Waits until all is written, but not longer than two seconds; what is left then ends the process at once with the
        status given. */
    ~Output();

    Output (const Output&) = delete;
    Output& operator= (const Output&) = delete;

    void print (std::string text);
    void printError (std::string text);

    /** The process's status in case that the output never takes all text. */
    void setExitStatus (int status) { exitStatus = status; }

private:
    void run();
    void add (std::ostream& stream, std::string text);

    std::mutex lock; ///< guards what follows
    std::condition_variable changed;
    std::deque<std::pair<std::ostream*, std::string>> texts;
    bool isEnding = false;
    bool isOver = false;

    int exitStatus = 1;
    std::thread thread;
};

} // namespace wqv
