// SPDX-License-Identifier: GPL-3.0-or-later
// Loading libsystemd, and looking up its functions.

#include "SystemBus.h"

namespace wqv
{

const SystemBus* SystemBus::get()
{
    static const SystemBus bus;
    return bus.isComplete ? &bus : nullptr;
}

SystemBus::SystemBus() : library ("libsystemd.so.0")
{
    look (openSystem, "sd_bus_open_system");
    look (closeUnref, "sd_bus_close_unref");
    look (callMethodAsync, "sd_bus_call_method_async");
    look (getFd, "sd_bus_get_fd");
    look (process, "sd_bus_process");
    look (messageGetError, "sd_bus_message_get_error");
    look (messageRead, "sd_bus_message_read");
}

template <typename Function>
void SystemBus::look (Function& function, const char* name)
{
    function = reinterpret_cast<Function> (library.getFunction (name));
    isComplete = isComplete && function != nullptr;
}

} // namespace wqv
