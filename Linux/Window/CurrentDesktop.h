// SPDX-License-Identifier: GPL-3.0-or-later
// Moving a window to the desktop that the user is looking at.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** Asks the window manager to put a window onto the current desktop. Where there are no several desktops, or no window manager,
    nothing happens. Does not wait for it to happen. Message thread only.
    @param window  a component on the desktop */
void bringToCurrentDesktop (const juce::Component& window);

} // namespace wqv
