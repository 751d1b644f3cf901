// SPDX-License-Identifier: GPL-3.0-or-later
// The application: from process start to process end.

#pragma once

#include "Platform.h"
#include "WindowSystem.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <memory>

namespace wqv
{

class MainWindow;

/** Shows the window and ends with it. JUCE drives it, on the message thread. */
class Application final : public juce::JUCEApplication
{
public:
    /** Makes the HID service, on the message thread, before the window. */
    using HidServiceMaker = std::function<std::unique_ptr<HidService>()>;

    /** The program's name, to users and to the system. */
    static constexpr const char* name = "WQVUpdateProgram";

    /** @param platformToUse, windowSystemToUse  outlive this object */
    Application (Platform& platformToUse, WindowSystem& windowSystemToUse, HidServiceMaker makerToUse);
    ~Application() override;

    /** Opens the window. Without a display it says so on standard error instead, and the exit status is 1. */
    void initialise (const juce::String& commandLine) override;

    /** Deletes the window, and with it the panel, be an update running or not. */
    void shutdown() override;

    const juce::String getApplicationName() override;    // NOLINT (readability-const-return-type): JUCE's
    const juce::String getApplicationVersion() override; // NOLINT (readability-const-return-type): JUCE's

    bool moreThanOneInstanceAllowed() override;

    /** Brings the window to the front and gives it the keyboard, if it is visible. */
    void anotherInstanceStarted (const juce::String& commandLine) override;

private:
    Platform& platform;
    WindowSystem& windowSystem;
    const HidServiceMaker makeHidService;

    std::shared_ptr<void> endRequests;
    std::unique_ptr<HidService> hidService;
    std::unique_ptr<MainWindow> mainWindow;
    std::unique_ptr<WindowAttachment> attachment;
};

} // namespace wqv
