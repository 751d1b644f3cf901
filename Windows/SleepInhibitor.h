// SPDX-License-Identifier: GPL-3.0-or-later
// Keeps the machine from falling asleep, and asks for the end of the session to wait.

#pragma once

#include "WindowsHandle.h"

#include <string>
#include <vector>

namespace wqv
{

/** While it lives, the machine does not fall asleep by itself; closing its lid or choosing to sleep still ends that. `powercfg
    /requests` shows who wants it, and why. The windows that the program has then show the reason, if the session is to end and
    they refuse. The system takes all of it back if the process ends in any other way. If the system refuses, a line on standard error
    says so. Message thread only. */
class SleepInhibitor
{
public:
    /** @param who, why  for people, UTF-8 */
    SleepInhibitor (const std::string& who, const std::string& why);
    ~SleepInhibitor();

    SleepInhibitor (const SleepInhibitor&) = delete;
    SleepInhibitor& operator= (const SleepInhibitor&) = delete;

private:
    WindowsHandle request;
    std::vector<HWND> windows;
};

} // namespace wqv
