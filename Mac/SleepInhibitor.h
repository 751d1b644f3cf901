// SPDX-License-Identifier: GPL-3.0-or-later
// Keeps the machine from falling asleep, by an assertion about its power.

#pragma once

#include <IOKit/pwr_mgt/IOPMLib.h>

#include <string>

namespace wqv
{

/** While it lives, the machine does not fall asleep by itself; closing its lid or choosing to sleep still ends that. `pmset -g
    assertions` shows who wants it, and why. The system takes it back if the process ends in any other way. If the system
    refuses, a line on standard error says so. Message thread only. */
class SleepInhibitor
{
public:
    /** @param who, why  for people, UTF-8 */
    SleepInhibitor (const std::string& who, const std::string& why);
    ~SleepInhibitor();

    SleepInhibitor (const SleepInhibitor&) = delete;
    SleepInhibitor& operator= (const SleepInhibitor&) = delete;

private:
    IOPMAssertionID assertion = kIOPMNullAssertionID;
};

} // namespace wqv
