// SPDX-License-Identifier: GPL-3.0-or-later
// Asking logind for locks, and holding them.

#include "SleepInhibitor.h"

#include "Complaint.h"
#include "SystemBus.h"

#include <juce_events/juce_events.h>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace wqv
{

SleepInhibitor::SleepInhibitor (const std::string& who, const std::string& why) : systemBus (SystemBus::get())
{
    if (systemBus == nullptr)
    {
        complain ("there is no libsystemd.so.0 to ask logind with");
        return;
    }

    if (const auto status = ask (who, why); status < 0)
    {
        giveUp (status);
        return;
    }

    // JUCE (7.0.5, 8.0.6) may call once more after the callback was unregistered.
    juce::LinuxEventLoop::registerFdCallback (systemBus->getFd (bus.get()),
                                              [this, weak = std::weak_ptr (bus)] (int)
                                              {
                                                  if (! weak.expired())
                                                      talk();
                                              });
    talk();
}

SleepInhibitor::~SleepInhibitor()
{
    hangUp();

    for (const auto& lock : locks)
        if (lock.descriptor >= 0)
            close (lock.descriptor);
}

/** Puts the questions on their way.
    @returns below 0 for an error of the system's */
int SleepInhibitor::ask (const std::string& who, const std::string& why)
{
    sd_bus* opened = nullptr;
    auto status = systemBus->openSystem (&opened);

    if (status < 0)
        return status;

    bus.reset (opened, systemBus->closeUnref);

    for (auto& lock : locks)
    {
        status = systemBus->callMethodAsync (
            opened,
            nullptr,
            "org.freedesktop.login1",
            "/org/freedesktop/login1",
            "org.freedesktop.login1.Manager",
            "Inhibit",
            [] (sd_bus_message* answer, void* asked, sd_bus_error* /*error*/)
            {
                static_cast<Lock*> (asked)->takeAnswer (*answer);
                return 0;
            },
            &lock,
            "ssss",
            lock.what,
            who.c_str(),
            why.c_str(),
            "block");

        if (status < 0)
            return status;
    }

    return status;
}

/** Sends and receives what there is, and hangs up when all answers have come. */
void SleepInhibitor::talk()
{
    const auto isOver = [this] { return std::ranges::all_of (locks, &Lock::isAnswered); };
    auto status = 1;

    while (status > 0 && ! isOver())
        status = systemBus->process (bus.get(), nullptr);

    if (isOver())
        hangUp();
    else if (status < 0)
        giveUp (status);
}

void SleepInhibitor::giveUp (int status)
{
    complain (std::strerror (-status)); // NOLINT (concurrency-mt-unsafe): only this thread asks
    hangUp();
}

void SleepInhibitor::complain (const char* reason) const
{
    for (const auto& lock : locks)
        if (! lock.isAnswered)
            lock.complain (reason);
}

void SleepInhibitor::hangUp()
{
    if (bus == nullptr)
        return;

    juce::LinuxEventLoop::unregisterFdCallback (systemBus->getFd (bus.get()));
    bus.reset();
}

void SleepInhibitor::Lock::takeAnswer (sd_bus_message& answer)
{
    int given = -1; // the message's own
    isAnswered = true;

    if (const auto* const error = SystemBus::get()->messageGetError (&answer); error != nullptr)
        complain (error->message != nullptr ? error->message : error->name);
    else if (SystemBus::get()->messageRead (&answer, "h", &given) < 0)
        complain ("logind's answer makes no sense");
    else
        descriptor = fcntl (given, F_DUPFD_CLOEXEC, 0);
}

void SleepInhibitor::Lock::complain (const char* reason) const
{
    wqv::complain (std::string ("the machine may ") + danger + " during the update: " + reason);
}

} // namespace wqv
