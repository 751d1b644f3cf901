// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures of the display, and news of what is drawn on it.

#include "DisplayWatch.h"

#include <X11/Xutil.h>
#include <poll.h>
#include <stdexcept>

namespace wqv
{

DisplayWatch::DisplayWatch() : display (XOpenDisplay (nullptr))
{
    int firstEvent = 0;
    int firstError = 0;

    if (display == nullptr || XDamageQueryExtension (display.get(), &firstEvent, &firstError) == 0)
        throw std::runtime_error ("no display that tells what is drawn on it");

    auto* const x = display.get();
    const auto root = XDefaultRootWindow (x);
    damage = XDamageCreate (x, root, XDamageReportNonEmpty);

    // Away from the window, whose looks could depend on it.
    XWarpPointer (x, None, root, 0, 0, 0, 0, 1, 1);
    XSync (x, False);
}

std::string DisplayWatch::picture()
{
    constexpr int width = 420;
    constexpr int height = 170;

    auto* const x = display.get();
    const auto screen = XDefaultScreen (x);
    auto* const image = XGetImage (x,
                                   XDefaultRootWindow (x),
                                   (XDisplayWidth (x, screen) - width) / 2,
                                   (XDisplayHeight (x, screen) - height) / 2,
                                   width,
                                   height,
                                   AllPlanes,
                                   ZPixmap);

    if (image == nullptr)
        return {};

    std::string pixels (image->data, static_cast<std::size_t> (image->bytes_per_line) * height);
    XDestroyImage (image);
    return pixels;
}

bool DisplayWatch::waitForDrawing (std::chrono::milliseconds limit)
{
    auto* const x = display.get();
    pollfd ready { .fd = XConnectionNumber (x), .events = POLLIN, .revents = 0 };

    if (XPending (x) == 0 && poll (&ready, 1, static_cast<int> (limit.count())) != 1)
        return false;

    while (XPending (x) > 0)
    {
        XEvent event;
        XNextEvent (x, &event);
    }

    XDamageSubtract (x, damage, None, None);
    return true;
}

} // namespace wqv
