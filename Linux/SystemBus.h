// SPDX-License-Identifier: GPL-3.0-or-later
// libsystemd's bus, loaded by name.

#pragma once

#include <juce_core/juce_core.h>

#include <systemd/sd-bus.h>

namespace wqv
{

/** The functions of libsystemd's that this program calls: it runs without them where a system has no libsystemd. Looked up
    once, at the first call of get; the library then stays loaded. Any thread. */
class SystemBus
{
public:
    /** @returns null if the system has no libsystemd */
    [[nodiscard]] static const SystemBus* get();

    decltype (&sd_bus_open_system) openSystem = nullptr;
    decltype (&sd_bus_close_unref) closeUnref = nullptr;
    decltype (&sd_bus_call_method_async) callMethodAsync = nullptr;
    decltype (&sd_bus_get_fd) getFd = nullptr;
    decltype (&sd_bus_process) process = nullptr;
    decltype (&sd_bus_message_get_error) messageGetError = nullptr;
    decltype (&sd_bus_message_read) messageRead = nullptr;

private:
    SystemBus();

    template <typename Function>
    void look (Function& function, const char* name);

    juce::DynamicLibrary library;
    bool isComplete = true;
};

} // namespace wqv
