// SPDX-License-Identifier: GPL-3.0-or-later
// The end of the process when its display goes away.

#pragma once

#include <functional>

namespace wqv
{

/** Ends the process in order, with exit status 1 and a line on standard error, when the X server goes away or cuts the
    connection. One object at a time; what it sets up stays when it goes, without the last steps. */
class DisplayLoss
{
public:
    /** To be made after the connection, on whose making JUCE (7.0.5, 8.0.6) sets up its own way to end.
        @param lastSteps  called before the end, on the thread that has found the connection broken and in the middle of
                          what it was doing: it must not use the display */
    explicit DisplayLoss (std::function<void()> lastSteps);
    ~DisplayLoss();

    DisplayLoss (const DisplayLoss&) = delete;
    DisplayLoss& operator= (const DisplayLoss&) = delete;
};

} // namespace wqv
