// SPDX-License-Identifier: GPL-3.0-or-later
// The program that is shipped: the application over the system's own HID devices.

#include "Application.h"
#include "LinuxHidService.h"

namespace
{

juce::JUCEApplicationBase* createApplication()
{
    return new wqv::Application ([] { return std::make_unique<wqv::LinuxHidService>(); });
}

} // namespace

int main (int argc, char* argv[])
{
    juce::JUCEApplicationBase::createInstance = &createApplication;
    return juce::JUCEApplicationBase::main (argc, const_cast<const char**> (argv));
}
