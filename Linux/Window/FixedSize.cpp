// SPDX-License-Identifier: GPL-3.0-or-later
// Our own function in the place of Xlib's XSetWMNormalHints, which JUCE calls by a pointer.

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1 // JUCE's pointers

#include "FixedSize.h"

namespace wqv
{

/** What stands in the function's place. */
struct FixedSize::Completion
{
    static void setHints (::Display* display, ::Window target, XSizeHints* hints)
    {
        if (const auto* const peer = keeper->window.getPeer();
            peer != nullptr && reinterpret_cast<::Window> (peer->getNativeHandle()) == target)
            complete (*hints);

        XSetWMNormalHints (display, target, hints);
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

    static inline FixedSize* keeper = nullptr; ///< the function has no other way to learn it
};

FixedSize::FixedSize (const juce::Component& windowToKeep) : window (windowToKeep), size (windowToKeep.getLocalBounds())
{
    Completion::keeper = this;
    juce::X11Symbols::getInstance()->xSetWMNormalHints = &Completion::setHints;
}

FixedSize::~FixedSize()
{
    juce::X11Symbols::getInstance()->xSetWMNormalHints = &XSetWMNormalHints;
    Completion::keeper = nullptr;
}

} // namespace wqv
