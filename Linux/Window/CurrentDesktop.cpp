// SPDX-License-Identifier: GPL-3.0-or-later
// Asking the window manager for another desktop (_NET_WM_DESKTOP).

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1 // JUCE's connection: what JUCE sends next comes after this

#include "CurrentDesktop.h"

namespace wqv
{

void bringToCurrentDesktop (const juce::Component& window)
{
    auto* const display = juce::XWindowSystem::getInstance()->getDisplay();
    const auto root = XDefaultRootWindow (display);
    const juce::XWindowSystemUtilities::GetXProperty current (
        display, root, XInternAtom (display, "_NET_CURRENT_DESKTOP", False), 0, 1, false, XA_CARDINAL);

    if (! current.success || current.actualFormat != 32 || current.numItems != 1)
        return;

    constexpr long directUser = 2; // whose wish this is: a second start is the user's own

    XEvent event {};
    event.xclient.type = ClientMessage;
    event.xclient.window = reinterpret_cast<::Window> (window.getPeer()->getNativeHandle());
    event.xclient.message_type = XInternAtom (display, "_NET_WM_DESKTOP", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = *reinterpret_cast<const long*> (current.data); // Xlib hands 32 bits over as a long
    event.xclient.data.l[1] = directUser;
    XSendEvent (display, root, False, SubstructureRedirectMask | SubstructureNotifyMask, &event);
}

} // namespace wqv
