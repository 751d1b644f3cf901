// SPDX-License-Identifier: GPL-3.0-or-later
// Whether the program runs already, and what asks the instance that runs to raise its window.

#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace wqv
{

/** One instance for each user, machine and X server: the first one owns a selection of the server's, until its process ends,
    however that ends. It has a connection to the display of its own for that, so that it may lose the window earlier.

    All others ask the owner to raise its window. Who may use the display could take the selection and keep the program from
    starting, but might as well cut its connection; nobody else can.
*/
class SingleInstance
{
public:
    enum class Start
    {
        first,   ///< this is the only instance until this object goes; or there is no display, for JUCE to find out
        raised,  ///< another instance has raised its window
        noAnswer ///< another instance runs and has not answered in time
    };

    /** Connects to the display that JUCE would take. From here on Xlib's errors end the process no more, but the loss of the
        display does.
        @param program  the program's name */
    explicit SingleInstance (const std::string& program);
    ~SingleInstance();

    SingleInstance (const SingleInstance&) = delete;
    SingleInstance& operator= (const SingleInstance&) = delete;

    /** Becomes the first instance, or asks that one to raise its window and waits for it. One that ends meanwhile, at once or
        after a while, is followed by this one.
        @param limit  how long to wait */
    [[nodiscard]] Start start (std::chrono::milliseconds limit = std::chrono::seconds (10));

    /** Readable while other instances wait for an answer; -1 without a display. */
    [[nodiscard]] int descriptor() const;

    /** Answers those that wait; does not block. Whoever is not answered waits until this process ends.
        @param raise  called before they hear of it, once for all of them; not if there are none */
    void answer (const std::function<void()>& raise);

private:
    struct Connection;

    std::unique_ptr<Connection> connection; ///< null without a display
};

} // namespace wqv
