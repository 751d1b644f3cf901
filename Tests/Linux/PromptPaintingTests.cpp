// SPDX-License-Identifier: GPL-3.0-or-later
// That no picture waits for a frame, in any window: on a display that on-display makes.

// First, since Xlib's macros have common names.
#include <gtest/gtest.h>

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1 // a window's X11 id

#include "DisplayEvents.h"
#include "JuceVersions.h"
#include "PromptPainting.h"

#include <functional>

namespace wqv
{
namespace
{

struct Window final : juce::Component
{
    Window() { setSize (30, 20); }

    void appear()
    {
        addToDesktop (juce::ComponentPeer::windowIsTemporary);
        setVisible (true);
    }

    void paint (juce::Graphics& /*g*/) override { whenPainted(); }

    std::function<void()> whenPainted = [] {};
};

/** Whether a window is painted between two frames. It is spoilt after a frame before which all was quiet, since events that
    come for another reason would have it painted too; and again if the next frame was earlier, as on a busy machine it may be. */
bool isPaintedWithoutFrame (Window& window, const std::function<void()>& spoil)
{
    int framesLeft = 20;
    auto isQuiet = false;
    auto isSpoilt = false;
    auto isPainted = false;

    const auto frame = [&]
    {
        if (--framesLeft > 0 && isQuiet && ! isSpoilt)
            juce::MessageManager::callAsync (
                [&]
                {
                    isSpoilt = true;
                    spoil();
                });

        isQuiet = ! isSpoilt;
        isSpoilt = false;
    };

    const juce::VBlankAttachment eachFrame (&window, frame);

    window.whenPainted = [&]
    {
        isQuiet = false;
        isPainted = isPainted || isSpoilt;
    };

    while (framesLeft > 0 && ! isPainted)
        juce::dispatchNextMessageOnSystemQueue (false);

    window.whenPainted = [] {};
    return isPainted;
}

TEST (PromptPaintingTests, PaintsWhatChangesOrIsUncoveredWithoutAFrame)
{
    const juce::ScopedJuceInitialiser_GUI juceIsThere;
    auto* const user = XOpenDisplay (nullptr);
    ASSERT_NE (user, nullptr);

    Window window;
    PromptPainting painting (window, DisplayEvents::flush);
    const DisplayEvents displayEvents ([&] { painting.paint(); });
    Window menu;
    window.appear();
    menu.appear();

    for (auto* const each : { &window, &menu })
    {
        EXPECT_TRUE (isPaintedWithoutFrame (*each, [&] { each->repaint(); }));

        EXPECT_TRUE (isPaintedWithoutFrame (*each,
                                            [&]
                                            {
                                                const auto id = each->getPeer()->getNativeHandle();
                                                XClearArea (user, reinterpret_cast<::Window> (id), 0, 0, 0, 0, True);
                                                XFlush (user);
                                            }));
    }

    juce::Desktop::getInstance().setGlobalScaleFactor (2.0f); // the list of displays is a new one
    painting.paint();
    EXPECT_LT (juce::Desktop::getInstance().getDisplays().getPrimaryDisplay()->verticalFrequencyHz.value_or (100), 10);
    XCloseDisplay (user);
}

} // namespace
} // namespace wqv
