// SPDX-License-Identifier: GPL-3.0-or-later
// What can be seen in the middle of the X display.

#pragma once

#include <X11/Xlib.h>
#include <X11/extensions/Xdamage.h>

#include <chrono>
#include <memory>
#include <string>

namespace wqv
{

/** Looks at the place where a centred window of the program's size appears. */
class DisplayWatch
{
public:
    DisplayWatch();

    /** The pixels there. */
    [[nodiscard]] std::string picture();

    /** Waits until something is drawn on the display; false when nothing is for that long. */
    bool waitForDrawing (std::chrono::milliseconds limit);

private:
    struct Close
    {
        void operator() (Display* display) const { XCloseDisplay (display); }
    };

    std::unique_ptr<Display, Close> display;
    Damage damage = 0;
};

} // namespace wqv
