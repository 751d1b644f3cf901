// SPDX-License-Identifier: GPL-3.0-or-later
// How often the engine wakes while nothing happens: the system's HID service and the updater, without a window.

#include "ChildProgram.h"
#include "LinuxHidService.h"
#include "MessageLoop.h"
#include "Unseen.h"
#include "Updater.h"

#include <benchmark/benchmark.h>

#include <juce_events/juce_events.h>

#include <chrono>
#include <sys/timerfd.h>
#include <unistd.h>

namespace wqv
{
namespace
{

void idleEngine (benchmark::State& state)
{
    constexpr std::chrono::seconds measuring { 10 };

    const MessageLoop loop;
    LinuxHidService service;
    Unseen listener;
    const Updater updater ({ .hidService = service, .folder = {}, .quit = [] {} }, listener);

    while (state.KeepRunning())
    {
        auto isOver = false;
        const auto timer = timerfd_create (CLOCK_MONOTONIC, TFD_CLOEXEC);
        const itimerspec once { .it_interval = {}, .it_value = { .tv_sec = measuring.count(), .tv_nsec = 0 } };
        timerfd_settime (timer, 0, &once, nullptr);
        juce::LinuxEventLoop::registerFdCallback (timer, [&isOver] (int) { isOver = true; });

        const auto before = wakeUpsOf (getpid());
        loop.runUntil ([&isOver] { return isOver; });
        const auto count = wakeUpsOf (getpid()) - before;

        juce::LinuxEventLoop::unregisterFdCallback (timer);
        close (timer);

        const auto seconds = static_cast<double> (measuring.count());
        state.counters["per_second"] = static_cast<double> (count) / seconds;
        state.SetIterationTime (seconds);
    }
}

BENCHMARK (idleEngine)->Name ("wakeUps/engine")->UseManualTime()->Iterations (1);

} // namespace
} // namespace wqv
