// SPDX-License-Identifier: GPL-3.0-or-later
// Keeps the machine from falling asleep, by logind.

#pragma once

#include <memory>
#include <string>

struct sd_bus;
struct sd_bus_message;

namespace wqv
{

/** While it lives, the machine neither sleeps nor turns idle, not even when its lid is closed; the desktop can show who
    wants that, and why. The kernel gives it back if the process ends in any other way.

    It never waits: logind is asked in the background of the message loop. If it refuses or is not there, one line on
    standard error says so, and that is all; one that never answers is not complained of. Message thread only.
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
    [[nodiscard]] int ask (const std::string& who, const std::string& why);
    void talk();
    void takeAnswer (sd_bus_message& answer);
    void hangUp();

    std::shared_ptr<sd_bus> bus; ///< until logind has answered
    bool isAnswered = false;
    int lock = -1; ///< the machine stays awake while this descriptor is open
};

} // namespace wqv
