// SPDX-License-Identifier: GPL-3.0-or-later
// The smallest and largest size in a window's hints, whatever JUCE writes over them: on a display that on-display
// makes.

// First, since Xlib's macros have common names.
#include <gtest/gtest.h>

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1 // JUCE's connection

#include "FixedSize.h"

#include <string>
#include <utility>

namespace wqv
{
namespace
{

std::string limits (const juce::Component& window)
{
    XSizeHints hints {};
    long given = 0;
    XGetWMNormalHints (juce::XWindowSystem::getInstance()->getDisplay(),
                       reinterpret_cast<::Window> (window.getPeer()->getNativeHandle()),
                       &hints,
                       &given);

    const auto text = [] (int width, int height) { return std::to_string (width) + "x" + std::to_string (height); };
    return (hints.flags & PMinSize) == 0 || (hints.flags & PMaxSize) == 0
               ? "none"
               : text (hints.min_width, hints.min_height) + " to " + text (hints.max_width, hints.max_height);
}

TEST (FixedSizeTests, IsInTheHintsWhateverJuceWritesOverThem)
{
    const juce::ScopedJuceInitialiser_GUI juceIsThere;

    for (const auto& [scale, expected] : { std::pair { 1.0f, "42x17 to 42x17" }, { 2.0f, "84x34 to 84x34" } })
    {
        juce::Desktop::getInstance().setGlobalScaleFactor (scale);
        juce::Component window;
        juce::Component other;
        window.setSize (42, 17);

        const FixedSize fixedSize (window);
        window.addToDesktop (juce::ComponentPeer::windowHasTitleBar);
        EXPECT_EQ (limits (window), expected);

        window.setVisible (true);
        window.setTopLeftPosition (30, 40);
        EXPECT_EQ (limits (window), expected);

        // As a window manager may want it, and JUCE then says again.
        window.setSize (100, 60);
        EXPECT_EQ (limits (window), expected);
        EXPECT_EQ (window.getLocalBounds(), juce::Rectangle<int> (42, 17));

        other.setSize (10, 10);
        other.addToDesktop (0);
        EXPECT_EQ (limits (other), "none");
    }
}

} // namespace
} // namespace wqv
