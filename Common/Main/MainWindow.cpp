// SPDX-License-Identifier: GPL-3.0-or-later
// Opening the window.

#include "MainWindow.h"

#include <utility>

namespace wqv
{

MainWindow::MainWindow (const juce::String& name, Updater::Host host, std::span<const std::string> preferredLanguages)
    : ResizableWindow (name, true), content (*new MainComponent (std::move (host), preferredLanguages))
{
    setContentOwned (&content, true);
    centreWithSize (getWidth(), getHeight());
    setAlwaysOnTop (true);
    setVisible (true);
    setUsingNativeTitleBar (true);

    // The window was as large as its own border made it while it had one.
    setContentComponentSize (MainComponent::panelWidth, MainComponent::panelHeight);
    centreWithSize (getWidth(), getHeight());
}

} // namespace wqv
