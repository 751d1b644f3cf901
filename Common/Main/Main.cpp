// SPDX-License-Identifier: GPL-3.0-or-later
// The program that is shipped: the application over the system's own HID devices, once for each user and display.

#include "Application.h"
#include "LinuxHidService.h"
#include "SingleInstance.h"

#include <cstdlib>
#include <iostream>

namespace
{

/** Held until the process ends, since a window that is gone may still have a write to wait for. */
wqv::SingleInstance& thisInstance()
{
    static wqv::SingleInstance instance (wqv::Application::name);
    return instance;
}

juce::JUCEApplicationBase* createApplication()
{
    auto& instance = thisInstance();
    return new wqv::Application ([] { return std::make_unique<wqv::LinuxHidService>(); },
                                 instance.descriptor() >= 0 ? &instance : nullptr);
}

} // namespace

int main (int argc, char* argv[])
{
    using Start = wqv::SingleInstance::Start;
    const auto start = thisInstance().start();

    if (start == Start::raised)
        return EXIT_SUCCESS;

    if (start == Start::noAnswer)
    {
        std::cerr << wqv::Application::name << ": it is running already, but does not answer\n";
        return EXIT_FAILURE;
    }

    juce::JUCEApplicationBase::createInstance = &createApplication;
    return juce::JUCEApplicationBase::main (argc, const_cast<const char**> (argv));
}
