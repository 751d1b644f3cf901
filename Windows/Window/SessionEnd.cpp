// SPDX-License-Identifier: GPL-3.0-or-later
// The handler of a window's messages in front of JUCE's, and its two messages.

#include "SessionEnd.h"

#include <utility>

namespace wqv
{

SessionEnd* SessionEnd::current = nullptr;

SessionEnd::SessionEnd (juce::Component& window, std::function<void()> onEndToUse)
    : component (window), onEnd (std::move (onEndToUse))
{
    component.addComponentListener (this);
}

SessionEnd::~SessionEnd()
{
    component.removeComponentListener (this);

    if (handle != nullptr)
        SetWindowLongPtrW (handle, GWLP_WNDPROC, reinterpret_cast<LONG_PTR> (next));

    current = nullptr;
}

/** Only now the system has a window for it. */
void SessionEnd::componentVisibilityChanged (juce::Component& /*component*/)
{
    if (handle != nullptr || component.getPeer() == nullptr)
        return;

    handle = static_cast<HWND> (component.getPeer()->getNativeHandle());
    current = this;
    next = reinterpret_cast<WNDPROC> (
        SetWindowLongPtrW (handle, GWLP_WNDPROC, reinterpret_cast<LONG_PTR> (&handleMessage)));
}

LRESULT CALLBACK SessionEnd::handleMessage (HWND window, UINT message, WPARAM first, LPARAM second)
{
    DWORD length = 0;

    if (message == WM_QUERYENDSESSION && ShutdownBlockReasonQuery (window, nullptr, &length) != FALSE)
        return FALSE;

    if (message == WM_ENDSESSION && first != FALSE)
        current->onEnd();

    return CallWindowProcW (current->next, window, message, first, second);
}

} // namespace wqv
