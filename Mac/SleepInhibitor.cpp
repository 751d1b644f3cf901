// SPDX-License-Identifier: GPL-3.0-or-later
// Making the assertion, and taking it back.

#include "SleepInhibitor.h"

#include "CfPointer.h"
#include "Complaint.h"

#include <IOKit/IOReturn.h>

namespace wqv
{

SleepInhibitor::SleepInhibitor (const std::string& who, const std::string& why)
{
    const CfPointer<CFStringRef> name (
        CFStringCreateWithCString (kCFAllocatorDefault, (who + ": " + why).c_str(), kCFStringEncodingUTF8));

    if (name == nullptr
        || IOPMAssertionCreateWithName (
               kIOPMAssertionTypePreventUserIdleSystemSleep, kIOPMAssertionLevelOn, name.get(), &assertion)
               != kIOReturnSuccess)
    {
        assertion = kIOPMNullAssertionID;
        complain ("the machine may fall asleep during the update: the system refuses");
    }
}

SleepInhibitor::~SleepInhibitor()
{
    if (assertion != kIOPMNullAssertionID)
        IOPMAssertionRelease (assertion);
}

} // namespace wqv
