// SPDX-License-Identifier: GPL-3.0-or-later
// A stand-in for JUCE's threads and locks: a thread is nothing but a note that it runs.

#pragma once

namespace juce
{

struct CriticalSection
{};

struct ScopedLock
{
    explicit ScopedLock (const CriticalSection& /*lock*/) {}
};

class Thread
{
public:
    static inline bool canStart = true; ///< whether the system has a thread to give
    static inline int starts = 0;       ///< of all threads

    explicit Thread (const char* /*name*/) {}
    virtual ~Thread() = default;

    virtual void run() = 0;

    bool startThread()
    {
        starts += ! isRunning && canStart ? 1 : 0;
        isRunning = isRunning || canStart;
        return isRunning;
    }

    [[nodiscard]] bool isThreadRunning() const { return isRunning; }

protected:
    bool isRunning = false;
};

} // namespace juce
