// SPDX-License-Identifier: GPL-3.0-or-later
// Our own functions in the places of Xlib's XSetWMNormalHints and XMoveResizeWindow, which JUCE calls by pointers.

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1 // JUCE's pointers

#include "FixedSize.h"

namespace wqv
{

/** What stands in their places. */
struct FixedSize::Interception
{
    static bool isOfKept (::Window target)
    {
        const auto* const peer = keeper != nullptr ? keeper->window.getPeer() : nullptr;
        return peer != nullptr && reinterpret_cast<::Window> (peer->getNativeHandle()) == target;
    }

    static void setHints (::Display* display, ::Window target, XSizeHints* hints)
    {
        if (isOfKept (target))
            complete (*hints);

        XSetWMNormalHints (display, target, hints);
    }

    static void place (::Display* display, ::Window target, int x, int y, unsigned width, unsigned height)
    {
        if (isOfKept (target) && keeper->window.isVisible())
            XResizeWindow (display, target, width, height);
        else
            XMoveResizeWindow (display, target, x, y, width, height);
    }

    static void complete (XSizeHints& hints)
    {
        // A window manager may have given it another size, which it is not to keep.
        if ((hints.flags & USSize) != 0 && keeper->window.getLocalBounds() == keeper->size)
            keeper->inPixels.setSize (hints.width, hints.height);

        if (keeper->inPixels.isEmpty())
            return;

        hints.flags |= PMinSize | PMaxSize;
        hints.min_width = hints.max_width = keeper->inPixels.getWidth();
        hints.min_height = hints.max_height = keeper->inPixels.getHeight();
    }

    static inline FixedSize* keeper = nullptr; ///< the functions have no other way to learn it; null without one
};

FixedSize::FixedSize (juce::Component& windowToKeep) : window (windowToKeep), size (windowToKeep.getLocalBounds())
{
    Interception::keeper = this;
    juce::X11Symbols::getInstance()->xSetWMNormalHints = &Interception::setHints;
    juce::X11Symbols::getInstance()->xMoveResizeWindow = &Interception::place;
    window.addComponentListener (this);
}

FixedSize::~FixedSize()
{
    window.removeComponentListener (this);
    Interception::keeper = nullptr;
}

void FixedSize::componentMovedOrResized (juce::Component& /*component*/, bool /*wasMoved*/, bool /*wasResized*/)
{
    if (window.getLocalBounds() != size && timesLeft-- > 0)
        window.setSize (size.getWidth(), size.getHeight());
}

} // namespace wqv
