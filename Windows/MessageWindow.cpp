// SPDX-License-Identifier: GPL-3.0-or-later
// A window's class, its making, and its messages.

#include "MessageWindow.h"

#include <utility>

namespace wqv
{
namespace
{

constexpr const wchar_t* className = L"WQVMessageWindow";

/** Every window has a class, which has to be made once. */
bool hasClass (WNDPROC handler)
{
    static const auto atom = [handler]
    {
        WNDCLASSEXW description {};
        description.cbSize = sizeof (description);
        description.lpfnWndProc = handler;
        description.hInstance = GetModuleHandleW (nullptr);
        description.lpszClassName = className;
        return RegisterClassExW (&description);
    }();

    return atom != 0;
}

} // namespace

MessageWindow::MessageWindow (Kind kind, Handler onMessage) : handler (std::move (onMessage))
{
    if (hasClass (handleMessage))
        window = CreateWindowExW (0,
                                  className,
                                  L"",
                                  0,
                                  0,
                                  0,
                                  0,
                                  0,
                                  kind == Kind::messageOnly ? HWND_MESSAGE : nullptr,
                                  nullptr,
                                  GetModuleHandleW (nullptr),
                                  nullptr);

    if (window != nullptr)
        SetWindowLongPtrW (window, GWLP_USERDATA, reinterpret_cast<LONG_PTR> (this));
}

MessageWindow::~MessageWindow()
{
    if (window == nullptr)
        return;

    SetWindowLongPtrW (window, GWLP_USERDATA, 0);
    DestroyWindow (window);
}

LRESULT CALLBACK MessageWindow::handleMessage (HWND window, UINT message, WPARAM first, LPARAM second)
{
    // NOLINTNEXTLINE (performance-no-int-to-ptr): so the system hands pointers on
    const auto* const owner = reinterpret_cast<const MessageWindow*> (GetWindowLongPtrW (window, GWLP_USERDATA));

    if (owner != nullptr && owner->handler (message, first, second))
        return TRUE;

    return DefWindowProcW (window, message, first, second);
}

} // namespace wqv
