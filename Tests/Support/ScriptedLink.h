// SPDX-License-Identifier: GPL-3.0-or-later
// The conversation's link to a virtual controller, on the test's own thread and clock.

#pragma once

#include "ResponseMailbox.h"
#include "UpdateSequence.h"
#include "VirtualController.h"

#include <chrono>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace wqv
{

/** Plays what the controller does as a clock goes on that only waits and pauses move. Between the two lies the program's
    mailbox, so that the conversation sees exactly what it would see of it. No wait takes real time. */
class ScriptedLink final : public UpdateSequence::Link
{
public:
    using Milliseconds = std::chrono::milliseconds;

    struct Wait
    {
        std::size_t requests = 0; ///< sent before it
        Milliseconds limit {};
        Answer answer;
    };

    explicit ScriptedLink (VirtualController& controllerToUse) : controller (controllerToUse) {}

    bool send (const Request& request) override;
    [[nodiscard]] Answer wait (Milliseconds limit) override;
    void pause (Milliseconds duration) override;
    void reportProgress (double fraction) override { progress.push_back (fraction); }
    [[nodiscard]] bool stopRequested() const override { return isStopped; }

    /** The requests as the second digits of their codes: an update of one small block is "40132". */
    [[nodiscard]] std::string codes() const;

    void schedule (VirtualController::Event event) { events.emplace (now + event.delay, std::move (event)); }

    /** A stop is requested at the n-th step, counted from 0. Each send ends with one, each pause begins with one, and
        each wait does both. */
    std::size_t stopAt = std::numeric_limits<std::size_t>::max();

    ResponseMailbox mailbox;
    std::vector<Request> requests;
    std::vector<Wait> waits;
    std::vector<Milliseconds> pauses;
    std::vector<double> progress;
    Milliseconds now {};
    std::size_t requestsAtStop = 0; ///< sent until a stop was requested

private:
    void playUntil (Milliseconds end);
    void play (const VirtualController::Event& event);
    void takeStep();

    VirtualController& controller;
    std::multimap<Milliseconds, VirtualController::Event> events;
    std::size_t steps = 0;
    bool isPluggedIn = true;
    bool isStopped = false;
};

} // namespace wqv
