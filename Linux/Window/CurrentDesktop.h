// SPDX-License-Identifier: GPL-3.0-or-later
// Moving a window to the desktop that the user is looking at.

#pragma once

namespace wqv
{

/** Asks the window manager to put a window onto the current desktop, over a connection of its own. Where there are no
    several desktops, or no window manager, nothing happens. Does not wait for it to happen. */
void bringToCurrentDesktop (unsigned long window);

} // namespace wqv
