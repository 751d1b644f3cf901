// SPDX-License-Identifier: GPL-3.0-or-later
// Opening the window.

#include "MainWindow.h"

#include "Binary.h"

#include <utility>

namespace wqv
{

MainWindow::MainWindow (const juce::String& name, Updater::Host host, std::span<const std::string> preferredLanguages)
    : ResizableWindow (name, true), content (*new MainComponent (std::move (host), preferredLanguages))
{
    // Before it is shown: a window that gets its title bar afterwards is made anew in front of the user's eyes.
    setUsingNativeTitleBar (true);
    setContentOwned (&content, true);
    centreWithSize (getWidth(), getHeight());
    setAlwaysOnTop (true);
    setWantsKeyboardFocus (false); // but the panel does
    getPeer()->setIcon (juce::ImageFileFormat::loadFrom (wqv_krv20_updater_128_png_pointer,
                                                         static_cast<std::size_t> (wqv_krv20_updater_128_png_length)));
    setVisible (true);
}

} // namespace wqv
