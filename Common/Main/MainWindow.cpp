// SPDX-License-Identifier: GPL-3.0-or-later
// How the window is made and shown.

#include "MainWindow.h"

#include "EmbeddedFiles.h"

#include <tuple>
#include <utility>

namespace wqv
{

MainWindow::MainWindow (const juce::String& name,
                        Updater::Host host,
                        std::span<const std::string> preferredLanguages,
                        FlgTable fontSection)
    : ResizableWindow (name, false), content (*new MainComponent (std::move (host), preferredLanguages, fontSection))
{
    setUsingNativeTitleBar (true);
    setContentOwned (&content, true);
    centreWithSize (getWidth(), getHeight());
    setAlwaysOnTop (true);
    setWantsKeyboardFocus (false); // but the panel does
}

void MainWindow::appear()
{
    // Only now: for the title bar and for being on top JUCE (7.0.5, 8.0.6) would close a window that is on the desktop
    // already and make a new one.
    addToDesktop();
    getPeer()->setIcon (
        juce::ImageFileFormat::loadFrom (wqv_krv20_updater_128_png.data(), wqv_krv20_updater_128_png.size()));
    setVisible (true);
}

void MainWindow::disappear()
{
    setVisible (false);

    // A question to the display, whose answer comes only after the window is gone.
    std::ignore = juce::Desktop::getMousePosition();
}

} // namespace wqv
