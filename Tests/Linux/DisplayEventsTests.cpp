// SPDX-License-Identifier: GPL-3.0-or-later
// That no event of the display waits for the next one: on a display that on-display makes.

// First, since Xlib's macros have common names.
#include <gtest/gtest.h>

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1 // JUCE's connection

#include "DisplayEvents.h"

#include <X11/XKBlib.h>

#include <functional>
#include <memory>

namespace wqv
{
namespace
{

struct Close
{
    void operator() (Display* display) const { XCloseDisplay (display); }
};

/** A window that is on the desktop but never shown, so that the display has little to say about it by itself. */
class UnseenWindow final : public juce::Component
{
public:
    UnseenWindow()
    {
        setSize (10, 10);
        addToDesktop (0);
    }

    void userTriedToCloseWindow() override { whenClosed(); }

    std::function<void()> whenClosed;
};

// If an event is not handled, this does not end: the time limit is the judge. Several, since at the beginning the display
// may yet have something else to say.
TEST (DisplayEventsTests, HandlesWhatAQuestionToTheDisplayHasTakenOffTheConnection)
{
    const juce::ScopedJuceInitialiser_GUI juceIsThere;
    auto* const connection = juce::XWindowSystem::getInstance()->getDisplay();
    const std::unique_ptr<Display, Close> user (XOpenDisplay (nullptr));
    ASSERT_TRUE (connection != nullptr && user != nullptr) << "no display";

    UnseenWindow window;
    const DisplayEvents displayEvents;
    EXPECT_TRUE (XkbGetDetectableAutoRepeat (connection, nullptr)); // a held key is not told as released

    XEvent close {};
    close.xclient.type = ClientMessage;
    close.xclient.window = reinterpret_cast<Window> (window.getPeer()->getNativeHandle());
    close.xclient.message_type = XInternAtom (user.get(), "WM_PROTOCOLS", False);
    close.xclient.format = 32;
    close.xclient.data.l[0] = static_cast<long> (XInternAtom (user.get(), "WM_DELETE_WINDOW", False));

    const auto closeUnnoticed = [&]
    {
        XSendEvent (user.get(), close.xclient.window, False, NoEventMask, &close);
        XSync (user.get(), False);
        EXPECT_GT (XEventsQueued (connection, QueuedAfterReading), 0);
    };

    int rounds = 20;

    window.whenClosed = [&]
    {
        if (--rounds > 0)
            juce::MessageManager::callAsync (closeUnnoticed);
        else
            juce::MessageManager::getInstance()->stopDispatchLoop();
    };

    juce::MessageManager::callAsync (closeUnnoticed);
    juce::MessageManager::getInstance()->runDispatchLoop();
}

} // namespace
} // namespace wqv
