// SPDX-License-Identifier: GPL-3.0-or-later
// JUCE's message loop, run by a test.

#pragma once

#include "JuceVersions.h"

#include <juce_events/juce_events.h>

#include <limits>

namespace wqv
{

/** Makes the test's thread the message thread, which dispatches only when the test says so. JUCE lives as long as any
    of these objects. */
class MessageLoop
{
public:
    /** Dispatches until nothing is pending, but not more than @p rounds times. */
    void drain (int rounds = std::numeric_limits<int>::max()) const
    {
        while (rounds-- > 0 && juce::dispatchNextMessageOnSystemQueue (true))
        {
        }
    }

    /** Dispatches, and waits for messages, until something is so. Each change of it is to be followed by a message. */
    template <typename Condition>
    void runUntil (Condition&& isSo) const
    {
        while (! isSo())
            juce::dispatchNextMessageOnSystemQueue (false);
    }

private:
    const juce::ScopedJuceInitialiser_GUI juceLives;
};

} // namespace wqv
