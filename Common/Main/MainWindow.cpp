// SPDX-License-Identifier: GPL-3.0-or-later
// Opening the window.

#include "MainWindow.h"

#include "Binary.h"

#include <tuple>
#include <utility>

namespace wqv
{

MainWindow::MainWindow (const juce::String& name, Updater::Host host, std::span<const std::string> preferredLanguages)
    : ResizableWindow (name, false), content (*new MainComponent (std::move (host), preferredLanguages))
{
    setUsingNativeTitleBar (true);
    setContentOwned (&content, true);
    centreWithSize (getWidth(), getHeight());
    setAlwaysOnTop (true);
    setWantsKeyboardFocus (false); // but the panel does

    // Only now: for each of these a window that is there already would be made anew.
    addToDesktop();
    getPeer()->setIcon (juce::ImageFileFormat::loadFrom (wqv_krv20_updater_128_png_pointer,
                                                         static_cast<std::size_t> (wqv_krv20_updater_128_png_length)));
    setVisible (true);
}

void MainWindow::disappear()
{
    setVisible (false);

    // A question to the display, whose answer comes only after the window is gone.
    std::ignore = juce::Desktop::getMousePosition();
}

} // namespace wqv
