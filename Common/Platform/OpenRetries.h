// SPDX-License-Identifier: GPL-3.0-or-later
// Trying again to open a device that has just come.

#pragma once

#include "HidService.h"

#include <functional>
#include <map>
#include <memory>

namespace wqv
{

/** A device's node and its permissions may come shortly after the news of it, so a system's HID service tries for two
    seconds to open it. Message thread only. */
class OpenRetries final
{
public:
    /** @param tryAgain  called for a device that is to be opened once more; it may call all operations
        @param giveUp    called instead when that was tried often enough */
    OpenRetries (std::function<void (HidDeviceId)> tryAgain, std::function<void (HidDeviceId)> giveUp);
    ~OpenRetries();

    OpenRetries (const OpenRetries&) = delete;
    OpenRetries& operator= (const OpenRetries&) = delete;

    /** The device has come, something about it has changed, or it was opened: failures count from here on. */
    void begin (HidDeviceId device);

    /** The device could not be opened: it is tried again shortly, unless it has failed too often since begin(). */
    void failed (HidDeviceId device);

    /** The device is gone. */
    void end (HidDeviceId device);

private:
    struct Attempts
    {
        int left = 0;
        bool isDue = false;
    };

    class Timer;

    void tryWhatIsDue();

    std::function<void (HidDeviceId)> tryAgainCallback;
    std::function<void (HidDeviceId)> giveUpCallback;
    std::map<HidDeviceId, Attempts> attempts;
    const std::unique_ptr<Timer> timer;
};

} // namespace wqv
