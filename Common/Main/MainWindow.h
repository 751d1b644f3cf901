// SPDX-License-Identifier: GPL-3.0-or-later
// The program's one window.

#pragma once

#include "MainComponent.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <span>
#include <string>

namespace wqv
{

/** A window of fixed size around the panel, above all others, with the system's title bar. Message thread only. */
class MainWindow final : public juce::ResizableWindow
{
public:
    /** Makes the window around the panel, which is as large as its client area; it is not yet on the screen. */
    MainWindow (const juce::String& name,
                Updater::Host host,
                std::span<const std::string> preferredLanguages,
                FlgTable fontSection);

    /** Shows the window, centred. */
    void appear();

    /** Takes the window off the screen at once, whatever keeps the message thread afterwards. */
    void disappear();

    /** Stops a running update, without a look at the display. */
    void abandonUpdate() { content.abandonUpdate(); }

    /** Nothing: the program ends by its buttons, or when the system wants it to. */
    void userTriedToCloseWindow() override {}

private:
    MainComponent& content; ///< owned as the window's content component

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (MainWindow)
};

} // namespace wqv
