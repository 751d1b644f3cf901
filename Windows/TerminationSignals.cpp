// SPDX-License-Identifier: GPL-3.0-or-later
// The console's handler, which posts to a window of the message thread.

#include "TerminationSignals.h"

#include <atomic>
#include <utility>

namespace wqv
{
namespace
{

constexpr UINT signalCame = WM_APP;

/** Where the handler posts: a handler has no other way to learn it. */
std::atomic<HWND> target { nullptr };

/** On a thread of the system's. */
BOOL WINAPI handleSignal (DWORD signal)
{
    if (auto* const window = target.load(); window != nullptr)
        PostMessageW (window, signalCame, 0, 0);

    // After these the process ends as soon as this returns; it has five seconds to end by itself.
    if (signal != CTRL_C_EVENT && signal != CTRL_BREAK_EVENT)
        Sleep (INFINITE);

    return TRUE;
}

} // namespace

TerminationSignals::TerminationSignals (std::function<void()> onSignal)
    : window (MessageWindow::Kind::messageOnly,
              [callback = std::move (onSignal)] (UINT message, WPARAM /*first*/, LPARAM /*second*/)
              {
                  if (message == signalCame)
                      callback();

                  return message == signalCame;
              })
{
    target = window.get();

    // It stays, so that signals are ignored later.
    static const auto isSet = SetConsoleCtrlHandler (handleSignal, TRUE);
    static_cast<void> (isSet);
}

TerminationSignals::~TerminationSignals()
{
    target = nullptr;
}

} // namespace wqv
