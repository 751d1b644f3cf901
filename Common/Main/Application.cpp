// SPDX-License-Identifier: GPL-3.0-or-later
// How the application starts, and the order in which it ends.

#include "Application.h"

#include "Complaint.h"
#include "HidService.h"
#include "KeepAwake.h"
#include "MainWindow.h"

#include <utility>

namespace wqv
{

Application::Application (Platform& platformToUse, WindowSystem& windowSystemToUse, HidServiceMaker makerToUse)
    : platform (platformToUse), windowSystem (windowSystemToUse), makeHidService (std::move (makerToUse))
{
}

Application::~Application() = default;

void Application::initialise (const juce::String& /*commandLine*/)
{
    // JUCE (7.0.5, 8.0.6) crashes when it makes a window without a display.
    if (juce::Desktop::getInstance().getDisplays().displays.isEmpty())
    {
        complain ("no display to show a window on");
        setApplicationReturnValue (1);
        quit();
        return;
    }

    endRequests = platform.onEndRequest ([this] { systemRequestedQuit(); });
    hidService = makeHidService();
    mainWindow = std::make_unique<MainWindow> (
        name,
        Updater::Host { .hidService = *hidService,
                        .folder = platform.executableFile().parent_path(),
                        .quit = [this] { systemRequestedQuit(); },
                        .keepAwake = [this] { return std::make_shared<KeepAwake> (platform, name); } },
        platform.preferredLanguages(),
        windowSystem.fontSection());
    attachment = windowSystem.attach (*mainWindow, [this] { mainWindow->abandonUpdate(); });
    mainWindow->appear();
}

void Application::shutdown()
{
    // A write that the system holds may keep the worker for seconds: nobody should have to watch that.
    if (mainWindow != nullptr)
    {
        mainWindow->disappear();
        mainWindow->abandonUpdate();
    }

    attachment.reset();
    mainWindow.reset();
    hidService.reset();
    endRequests.reset();
}

const juce::String Application::getApplicationName() // NOLINT (readability-const-return-type): JUCE's
{
    return name;
}

const juce::String Application::getApplicationVersion() // NOLINT (readability-const-return-type): JUCE's
{
    return WQV_PROJECT_VERSION;
}

bool Application::moreThanOneInstanceAllowed()
{
    return ! windowSystem.leavesInstancesToJuce();
}

void Application::anotherInstanceStarted (const juce::String& /*commandLine*/)
{
    if (attachment != nullptr && mainWindow->isVisible())
        attachment->raise();
}

} // namespace wqv
