// SPDX-License-Identifier: GPL-3.0-or-later
// The application: from process start to process end.

#pragma once

#include "HidService.h"
#include "TerminationSignals.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <memory>

namespace wqv
{

class DisplayEvents;
class DisplayLoss;
class MainWindow;
class SingleInstance;

/** Shows the window and ends with it. The toolkit drives it, on the message thread. */
class Application final : public juce::JUCEApplication
{
public:
    /** Makes the HID service, on the message thread, before the window. */
    using HidServiceMaker = std::function<std::unique_ptr<HidService>()>;

    /** The program's name, to users and to the system. */
    static constexpr const char* name = "WQVUpdateProgram";

    /** @param instanceToUse  the first one, which others ask to raise the window; outlives this object; null for none */
    explicit Application (HidServiceMaker makerToUse, SingleInstance* instanceToUse = nullptr);
    ~Application() override;

    /** Opens the window. Without a display it says so on standard error instead, and the exit status is 1. */
    void initialise (const juce::String& commandLine) override;

    /** Deletes the window, and with it the panel, be an update running or not. */
    void shutdown() override;

    const juce::String getApplicationName() override;    // NOLINT (readability-const-return-type): the toolkit's
    const juce::String getApplicationVersion() override; // NOLINT (readability-const-return-type): the toolkit's

    /** Whether the toolkit's own lock is not to be used: a file in a public folder, which any user could hold. */
    bool moreThanOneInstanceAllowed() override;

    /** Brings the window to the front and gives it the keyboard, if it is visible. */
    void anotherInstanceStarted (const juce::String& commandLine) override;

private:
    HidServiceMaker makeHidService;
    SingleInstance* const instance;
    std::unique_ptr<HidService> hidService;
    std::unique_ptr<MainWindow> mainWindow;
    std::unique_ptr<DisplayEvents> displayEvents;
    std::unique_ptr<TerminationSignals> terminationSignals;
    std::unique_ptr<DisplayLoss> displayLoss;
};

} // namespace wqv
