// SPDX-License-Identifier: GPL-3.0-or-later
// The word between two instances of the program.

#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace wqv
{

/** One instance for each user and display, by a socket whose name only one process can have. The name is no file: it
    goes with the process, however that ends.

    An instance never reads what another one sends, and listens only to processes of its own user. So all that a process
    can do to it here is to have its window raised. A process of the same user that takes the name first can keep the program
    from starting, which it could in many ways. Another user who takes the names first, or queues at one by the thousand
    while nobody answers there, can bring about that two instances do not know of each other, nothing else.
*/
class SingleInstance
{
public:
    enum class Start
    {
        first,     ///< this is the only instance, and the name is held until this object goes
        unguarded, ///< strangers hold all names: whether this is the only instance cannot be known
        raised,    ///< another instance has raised its window
        noAnswer   ///< another instance runs and has not answered in time
    };

    /** @param program  the program's name
        @param display  the display's, as in the environment variable DISPLAY; with none it is that of ":0" */
    SingleInstance (std::string_view program, std::string_view display);
    ~SingleInstance();

    SingleInstance (const SingleInstance&) = delete;
    SingleInstance& operator= (const SingleInstance&) = delete;

    /** Takes the name, or asks who holds it to raise the window, and waits for that. One that ends meanwhile, at once or
        after a while, is followed by this one.
        @param limit  how long to wait for another instance; strangers may delay the start by a second more */
    [[nodiscard]] Start start (std::chrono::milliseconds limit = std::chrono::seconds (10));

    /** Readable while instances wait to be answered; -1 unless this is the first one. */
    [[nodiscard]] int descriptor() const { return listener; }

    /** Answers those that wait, a few at a time; does not block. Whoever is not answered waits until this process ends.
        @param raise  called before they hear of it, once for all of them; not if there are none */
    void answer (const std::function<void()>& raise) const;

private:
    enum class Reply
    {
        raised,
        none,     ///< not in time
        ended,    ///< the other one has ended
        unheard,  ///< nobody listens: the other one has just begun or just ended
        stranger, ///< another user's, or one that takes no connection at all
    };

    [[nodiscard]] std::string nameOf (int number) const;
    [[nodiscard]] bool take (const std::string& name);
    [[nodiscard]] Reply ask (const std::string& name, std::chrono::steady_clock::time_point end) const;
    [[nodiscard]] bool isOurs (int connection) const;

    const uid_t user;
    const std::string program;
    const std::string display;
    int listener = -1;
};

} // namespace wqv
