// SPDX-License-Identifier: GPL-3.0-or-later
// A stand-in for JUCE's message loop, of one message.

#pragma once

#include "Fuzz.h"
#include "juce_core/juce_core.h"

#include <utility>

namespace juce
{

struct AsyncUpdater
{
    virtual ~AsyncUpdater() = default;

    virtual void handleAsyncUpdate() = 0;
    void triggerAsyncUpdate() { pending = this; }
    static void cancelPendingUpdate() { pending = nullptr; }

    /** One round of the message loop. */
    static void dispatch()
    {
        if (auto* const updater = std::exchange (pending, nullptr))
            updater->handleAsyncUpdate();
    }

    static void drain()
    {
        for (int rounds = 0; pending != nullptr; ++rounds)
        {
            wqv::expect (rounds < 10, "the message loop comes to rest");
            dispatch();
        }
    }

    /** Whose update is due; null if nobody's. */
    static inline AsyncUpdater* pending = nullptr;
};

} // namespace juce
