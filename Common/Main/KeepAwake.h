// SPDX-License-Identifier: GPL-3.0-or-later
// An update keeps the machine and its screen awake.

#pragma once

#include "SleepInhibitor.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** While it lives, the machine does not sleep, turning it off is held up, and the screen does not blank. Message thread
    only. */
class KeepAwake
{
public:
    /** The reason that the desktop can show is that of the update's screen, in its language.
        @param applicationName  for people too */
    explicit KeepAwake (const juce::String& applicationName);
    ~KeepAwake();

    KeepAwake (const KeepAwake&) = delete;
    KeepAwake& operator= (const KeepAwake&) = delete;

private:
    SleepInhibitor inhibitor;
};

} // namespace wqv
