// SPDX-License-Identifier: GPL-3.0-or-later
// Keeping the machine and its screen awake during an update.

#pragma once

#include "Platform.h"

#include <memory>
#include <string>

namespace wqv
{

/** While it lives, the machine does not sleep, turning it off is held up, and the screen does not blank. Message thread
    only. */
class KeepAwake
{
public:
    /** The reason that the desktop can show is that of the update's screen, in its language.
        @param program  its name, for people too */
    KeepAwake (const Platform& platform, const std::string& program);
    ~KeepAwake();

    KeepAwake (const KeepAwake&) = delete;
    KeepAwake& operator= (const KeepAwake&) = delete;

private:
    const std::shared_ptr<void> machine;
};

} // namespace wqv
