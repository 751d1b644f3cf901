// SPDX-License-Identifier: GPL-3.0-or-later
// A power request, and the reason that a window shows.

#include "SleepInhibitor.h"

#include "Complaint.h"
#include "WideText.h"

namespace wqv
{
namespace
{

BOOL CALLBACK addVisible (HWND window, LPARAM windows)
{
    if (IsWindowVisible (window) != FALSE)
        // NOLINTNEXTLINE (performance-no-int-to-ptr): so the system hands pointers on
        reinterpret_cast<std::vector<HWND>*> (windows)->push_back (window);

    return TRUE;
}

} // namespace

SleepInhibitor::SleepInhibitor (const std::string& who, const std::string& why)
{
    auto text = widen (who + ": " + why);
    REASON_CONTEXT reason {};
    reason.Version = POWER_REQUEST_CONTEXT_VERSION;
    reason.Flags = POWER_REQUEST_CONTEXT_SIMPLE_STRING;
    reason.Reason.SimpleReasonString = text.data();
    request = WindowsHandle (PowerCreateRequest (&reason));

    if (! request.isValid() || PowerSetRequest (request.get(), PowerRequestSystemRequired) == FALSE)
        complain ("the machine may fall asleep during the update: the system refuses");

    // The system names the program itself.
    EnumThreadWindows (GetCurrentThreadId(), addVisible, reinterpret_cast<LPARAM> (&windows));

    for (auto* const window : windows)
        ShutdownBlockReasonCreate (window, widen (why).c_str());
}

SleepInhibitor::~SleepInhibitor()
{
    for (auto* const window : windows)
        ShutdownBlockReasonDestroy (window);
}

} // namespace wqv
