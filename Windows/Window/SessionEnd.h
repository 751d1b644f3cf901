// SPDX-License-Identifier: GPL-3.0-or-later
// What the window answers when the user's session is to end.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <windows.h>

#include <functional>

namespace wqv
{

/** Stands before JUCE's handler of a window's messages. Asked whether the session may end, JUCE (7.0.5, 8.0.6) asks the
    application to quit and says yes. While the window bears a reason against that, as during an update, the answer is no
    instead, and nothing happens to the update; Windows shows the user the reason, and the user decides. If the session ends all
    the same, the process ends as soon as the window has heard of it. Message thread. One window at a time. */
class SessionEnd final : private juce::ComponentListener
{
public:
    /** @param window  outlives this object
        @param onEnd   called when the process is about to end; it must not use the display */
    SessionEnd (juce::Component& window, std::function<void()> onEnd);
    ~SessionEnd() override;

    SessionEnd (const SessionEnd&) = delete;
    SessionEnd& operator= (const SessionEnd&) = delete;

private:
    void componentVisibilityChanged (juce::Component& component) override;
    static LRESULT CALLBACK handleMessage (HWND window, UINT message, WPARAM first, LPARAM second);

    juce::Component& component;
    const std::function<void()> onEnd;
    HWND handle = nullptr;
    WNDPROC next = nullptr;

    /** Whose handler is in place: Windows passes it nothing of ours. */
    static SessionEnd* current;
};

} // namespace wqv
