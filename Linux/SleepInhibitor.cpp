// SPDX-License-Identifier: GPL-3.0-or-later
// One call of logind's, whose answer is a descriptor.

#include "SleepInhibitor.h"

#include <juce_events/juce_events.h>

#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace wqv
{
namespace
{

void complain (const char* reason)
{
    std::cerr << "WQVUpdateProgram: the machine may fall asleep during the update: " << reason << '\n';
}

} // namespace

SleepInhibitor::SleepInhibitor (const std::string& who, const std::string& why)
{
    if (const auto status = ask (who, why); status < 0)
    {
        complain (std::strerror (-status)); // NOLINT (concurrency-mt-unsafe): only this thread asks
        bus.reset();
        return;
    }

    // The loop may call once more after the callback was unregistered.
    juce::LinuxEventLoop::registerFdCallback (sd_bus_get_fd (bus.get()),
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

    if (lock >= 0)
        close (lock);
}

/** Puts the question on its way.
    @returns below 0 for an error of the system's */
int SleepInhibitor::ask (const std::string& who, const std::string& why)
{
    sd_bus* opened = nullptr;

    if (const auto status = sd_bus_open_system (&opened); status < 0)
        return status;

    bus.reset (opened, sd_bus_close_unref);

    return sd_bus_call_method_async (
        opened,
        nullptr,
        "org.freedesktop.login1",
        "/org/freedesktop/login1",
        "org.freedesktop.login1.Manager",
        "Inhibit",
        [] (sd_bus_message* answer, void* inhibitor, sd_bus_error* /*error*/)
        {
            static_cast<SleepInhibitor*> (inhibitor)->takeAnswer (*answer);
            return 0;
        },
        this,
        "ssss",
        "sleep:idle:handle-lid-switch",
        who.c_str(),
        why.c_str(),
        "block");
}

/** Sends and receives what there is, and hangs up when the answer has come. */
void SleepInhibitor::talk()
{
    auto status = 1;

    while (status > 0 && ! isAnswered)
        status = sd_bus_process (bus.get(), nullptr);

    if (status < 0 && ! isAnswered)
        complain (std::strerror (-status)); // NOLINT (concurrency-mt-unsafe): only this thread asks

    if (status < 0 || isAnswered)
        hangUp();
}

void SleepInhibitor::takeAnswer (sd_bus_message& answer)
{
    int descriptor = -1; // the message's own
    isAnswered = true;

    if (const auto* const error = sd_bus_message_get_error (&answer); error != nullptr)
        complain (error->message != nullptr ? error->message : error->name);
    else if (sd_bus_message_read (&answer, "h", &descriptor) < 0)
        complain ("logind's answer makes no sense");
    else
        lock = fcntl (descriptor, F_DUPFD_CLOEXEC, 0);
}

void SleepInhibitor::hangUp()
{
    if (bus == nullptr)
        return;

    juce::LinuxEventLoop::unregisterFdCallback (sd_bus_get_fd (bus.get()));
    bus.reset();
}

} // namespace wqv
