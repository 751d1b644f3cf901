// SPDX-License-Identifier: GPL-3.0-or-later
// Starting and ending.

#include "Application.h"

#include "CurrentDesktop.h"
#include "DisplayEvents.h"
#include "DisplayLoss.h"
#include "ExecutableFile.h"
#include "KeepAwake.h"
#include "MainWindow.h"
#include "PreferredLanguages.h"
#include "SingleInstance.h"

#include <iostream>
#include <utility>

namespace wqv
{

Application::Application (HidServiceMaker makerToUse, SingleInstance* instanceToUse)
    : makeHidService (std::move (makerToUse)), instance (instanceToUse)
{
}

Application::~Application() = default;

void Application::initialise (const juce::String& /*commandLine*/)
{
    // The toolkit crashes when it makes a window without a display.
    if (juce::Desktop::getInstance().getDisplays().displays.isEmpty())
    {
        std::cerr << getApplicationName() << ": no display: the environment variable DISPLAY must name an X server\n";
        setApplicationReturnValue (1);
        quit();
        return;
    }

    // The toolkit has connected to the display.
    displayLoss = std::make_unique<DisplayLoss> (
        [this]
        {
            if (mainWindow != nullptr)
                mainWindow->abandonUpdate();
        });

    terminationSignals = std::make_unique<TerminationSignals> ([this] { systemRequestedQuit(); });
    hidService = makeHidService();
    mainWindow = std::make_unique<MainWindow> (
        getApplicationName(),
        Updater::Host { .hidService = *hidService,
                        .folder = getExecutableFile().parent_path(),
                        .quit = [this] { systemRequestedQuit(); },
                        .keepAwake = [this] { return std::make_shared<KeepAwake> (getApplicationName()); } },
        preferredLanguages());
    displayEvents = std::make_unique<DisplayEvents> (*mainWindow);

    if (instance != nullptr)
        juce::LinuxEventLoop::registerFdCallback (
            instance->descriptor(), [this] (int) { instance->answer ([this] { anotherInstanceStarted ({}); }); });
}

void Application::shutdown()
{
    // A write that the system holds may keep the worker for seconds: nobody should have to watch that. The display may
    // still go away, until the update is over.
    if (mainWindow != nullptr)
    {
        mainWindow->disappear();
        mainWindow->abandonUpdate();

        // Another instance that asks from here on starts when this process has ended.
        if (instance != nullptr)
            juce::LinuxEventLoop::unregisterFdCallback (instance->descriptor());
    }

    displayEvents.reset();
    mainWindow.reset();
    hidService.reset();
    terminationSignals.reset();
}

const juce::String Application::getApplicationName() // NOLINT (readability-const-return-type): the toolkit's
{
    return name;
}

const juce::String Application::getApplicationVersion() // NOLINT (readability-const-return-type): the toolkit's
{
    return WQV_VERSION;
}

bool Application::moreThanOneInstanceAllowed()
{
    return JUCE_LINUX != 0;
}

void Application::anotherInstanceStarted (const juce::String& /*commandLine*/)
{
    if (mainWindow == nullptr || ! mainWindow->isVisible())
        return;

    bringToCurrentDesktop (*mainWindow);
    mainWindow->toFront (true);
}

} // namespace wqv
