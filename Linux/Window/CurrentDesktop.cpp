// SPDX-License-Identifier: GPL-3.0-or-later
// Asking the window manager for another desktop (_NET_WM_DESKTOP).

#include "CurrentDesktop.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <memory>

namespace wqv
{
namespace
{

struct Close
{
    void operator() (Display* display) const { XCloseDisplay (display); }
    void operator() (unsigned char* property) const { XFree (property); }
};

} // namespace

void bringToCurrentDesktop (unsigned long window)
{
    const std::unique_ptr<Display, Close> display (XOpenDisplay (nullptr));

    if (display == nullptr)
        return;

    auto* const x = display.get();
    const auto root = XDefaultRootWindow (x);
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* property = nullptr;

    XGetWindowProperty (x,
                        root,
                        XInternAtom (x, "_NET_CURRENT_DESKTOP", False),
                        0,
                        1,
                        False,
                        XA_CARDINAL,
                        &type,
                        &format,
                        &count,
                        &left,
                        &property);
    const std::unique_ptr<unsigned char, Close> owned (property);

    if (property == nullptr || format != 32 || count != 1)
        return;

    constexpr long directUser = 2; // whose wish this is: a second start is the user's own

    XEvent event {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom (x, "_NET_WM_DESKTOP", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = *reinterpret_cast<const long*> (property); // Xlib hands 32 bits over as a long
    event.xclient.data.l[1] = directUser;
    XSendEvent (x, root, False, SubstructureRedirectMask | SubstructureNotifyMask, &event);

    // Before anything that JUCE sends over its own connection.
    XSync (x, False);
}

} // namespace wqv
