// SPDX-License-Identifier: GPL-3.0-or-later
// Keeps the machine from falling asleep and from being turned off, by logind.

#pragma once

#include <array>
#include <memory>
#include <string>

struct sd_bus;
struct sd_bus_message;

namespace wqv
{

class SystemBus;

/** While it lives, the machine neither sleeps nor turns idle, not even when its lid is closed, and turning it off is held
    up; the desktop can show who wants that, and why. The kernel gives it back if the process ends in any other way.

    It never waits: logind is asked in the background of the message loop, for turning off apart, since it may refuse that
    alone. Each refusal is one line on standard error, and so is a logind that is not there; nothing else happens. Of one
    that never answers nothing is said. Message thread only.
*/
class SleepInhibitor
{
public:
    /** @param who, why  for people, UTF-8 */
    SleepInhibitor (const std::string& who, const std::string& why);
    ~SleepInhibitor();

    SleepInhibitor (const SleepInhibitor&) = delete;
    SleepInhibitor& operator= (const SleepInhibitor&) = delete;

private:
    /** A lock that logind gives. */
    struct Lock
    {
        void takeAnswer (sd_bus_message& answer);
        void complain (const char* reason) const;

        const char* what;   ///< logind's names for it
        const char* danger; ///< what the machine may do without it
        bool isAnswered = false;
        int descriptor = -1; ///< held while it is open
    };

    [[nodiscard]] int ask (const std::string& who, const std::string& why);
    void talk();
    void giveUp (int status);
    void complain (const char* reason) const;
    void hangUp();

    const SystemBus* const systemBus; ///< null if the system has none

    std::array<Lock, 2> locks { { { .what = "sleep:idle:handle-lid-switch", .danger = "fall asleep" },
                                  { .what = "shutdown", .danger = "be turned off" } } };
    std::shared_ptr<sd_bus> bus; ///< until logind has answered
};

} // namespace wqv
