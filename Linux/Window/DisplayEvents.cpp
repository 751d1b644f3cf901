// SPDX-License-Identifier: GPL-3.0-or-later
// A hook of Xlib's at each event that comes, JUCE's own way to empty the queue, and a setting for held keys.

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1 // JUCE's connection

#include "DisplayEvents.h"

#include "JuceVersions.h"

#include <X11/XKBlib.h>
#include <X11/Xlibint.h> // the hook, for Xlib's extensions; and macros
#undef max
#undef min

#include <array>
#include <utility>
#include WQV_JUCE_EVENT_LOOP_INTERNAL

namespace wqv
{
namespace
{

::Display* display()
{
    return juce::XWindowSystem::getInstance()->getDisplay();
}

} // namespace

/** What Xlib calls to make an event of what it has read, just before it puts it into its queue. */
struct DisplayEvents::Arrival
{
    using Conversion = Bool (*) (::Display*, XEvent*, xEvent*);

    static constexpr std::size_t numTypes = 128; // those above have a bit that says who sent them
    static constexpr std::size_t firstType = 2;  // 0 and 1 are errors and answers

    static Bool convert (::Display* connection, XEvent* event, xEvent* received)
    {
        keeper->triggerAsyncUpdate(); // without Xlib, which is locked
        return conversions[received->u.u.type % numTypes](connection, event, received);
    }

    /** Puts the conversions in, and ours out, or the other way round. */
    static void exchange()
    {
        for (auto type = firstType; type < numTypes; ++type)
            conversions[type] = XESetWireToEvent (display(), static_cast<int> (type), conversions[type]);
    }

    static inline DisplayEvents* keeper = nullptr; ///< the function has no other way to learn it
    static inline std::array<Conversion, numTypes> conversions {};
};

DisplayEvents::DisplayEvents (std::function<void()> whenHandledToUse) : whenHandled (std::move (whenHandledToUse))
{
    Arrival::keeper = this;
    Arrival::conversions.fill (&Arrival::convert);
    Arrival::exchange();
    XkbSetDetectableAutoRepeat (display(), True, nullptr);
    triggerAsyncUpdate(); // for what has come before
}

DisplayEvents::~DisplayEvents()
{
    Arrival::exchange();
    Arrival::keeper = nullptr;
}

void DisplayEvents::flush()
{
    XFlush (display());
}

void DisplayEvents::handleAsyncUpdate()
{
    juce::LinuxEventLoopInternal::invokeEventLoopCallbackForFd (XConnectionNumber (display()));
    whenHandled();
}

} // namespace wqv
