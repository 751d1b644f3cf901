// SPDX-License-Identifier: GPL-3.0-or-later
// A window that nobody sees, for messages from Windows.

#pragma once

#include <windows.h>

#include <functional>

namespace wqv
{

/** Receives messages on the thread that makes it, the message thread. */
class MessageWindow
{
public:
    enum class Kind
    {
        messageOnly, ///< hears what is sent to it
        topLevel     ///< hears what is sent to all windows, too
    };

    /** Hears each message. @returns whether it was one of the owner's: what is not is the system's to handle */
    using Handler = std::function<bool (UINT message, WPARAM first, LPARAM second)>;

    MessageWindow (Kind kind, Handler onMessage);
    ~MessageWindow();

    MessageWindow (const MessageWindow&) = delete;
    MessageWindow& operator= (const MessageWindow&) = delete;

    /** Null if the system made none. */
    [[nodiscard]] HWND get() const { return window; }

private:
    static LRESULT CALLBACK handleMessage (HWND window, UINT message, WPARAM first, LPARAM second);

    const Handler handler;
    HWND window = nullptr;
};

} // namespace wqv
