// SPDX-License-Identifier: GPL-3.0-or-later
// A stand-in for JUCE's message loop, of one message.

#pragma once

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

    /** Whose update is due; null if nobody's. */
    static inline AsyncUpdater* pending = nullptr;
};

} // namespace juce
