// SPDX-License-Identifier: GPL-3.0-or-later
// Opening the window.

#include "MainWindow.h"

#include <memory>
#include <utility>

namespace wqv
{

MainWindow::MainWindow (const juce::String& name, Updater::Host host, std::span<const std::string> preferredLanguages)
    : ResizableWindow (name, true)
{
    setContentOwned (std::make_unique<MainComponent> (std::move (host), preferredLanguages).release(), true);
    centreWithSize (getWidth(), getHeight());
    setAlwaysOnTop (true);
    setVisible (true);
    setUsingNativeTitleBar (true);

    // The window was as large as its own border made it while it had one.
    setContentComponentSize (MainComponent::panelWidth, MainComponent::panelHeight);
}

void MainWindow::disappear()
{
    setVisible (false);

    // A question to the display, whose answer comes only after the window is gone.
    std::ignore = juce::Desktop::getMousePosition();
}

} // namespace wqv
