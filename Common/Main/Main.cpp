// SPDX-License-Identifier: GPL-3.0-or-later
// The program that is shipped: the application over the system's own HID devices, once for each user and display.

#include "Application.h"
#include "HidService.h"
#include "JuceVersions.h"
#include "StandardStreams.h"

namespace
{

/** Kept until the process ends: another instance may start only when this one's last write is over. */
wqv::WindowSystem& theWindowSystem()
{
    static const auto windowSystem = wqv::makeWindowSystem (wqv::Application::name);
    return *windowSystem;
}

/** JUCE makes the application by a plain function. */
juce::JUCEApplicationBase* createApplication()
{
    static const auto platform = wqv::makePlatform();
    return new wqv::Application (*platform, theWindowSystem(), [] { return platform->makeHidService(); });
}

} // namespace

int main (int argc, char* argv[])
{
    wqv::openStandardStreams();

    if (const auto exitStatus = theWindowSystem().yieldToOtherInstance())
        return *exitStatus;

    return wqv::runApplication (&createApplication, argc, argv);
}
