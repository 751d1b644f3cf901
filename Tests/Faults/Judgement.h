// SPDX-License-Identifier: GPL-3.0-or-later
// Which promises an update with all threads has broken: it is put beside them, and beside the same one without threads and time.

#pragma once

#include "Conversation.h"
#include "FaultedUpdate.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace wqv
{

/** Compares the update with what its faults lead to on a clock that only waits and pauses move, in one thread: the threads, the
    message loop and real time must change nothing. Where a controller says more than the protocol allows it, what comes of
    that is a matter of time, and only the promises count. */
class Judgement
{
public:
    Judgement (const FaultedUpdate& update, const FaultScript& faults)
    {
        judgeOutcome (update);

        if (! breaksTheOrder (faults))
            compare (update, faults);
    }

    std::vector<std::string> broken; ///< the promises, for people; empty is good

    /** How long the update takes by the limits of the protocol alone; nothing if its faults leave that open. */
    std::optional<std::chrono::milliseconds> byProtocol;

private:
    void expect (bool isSo, const std::string& promise)
    {
        if (! isSo)
            broken.push_back (promise);
    }

    void judgeOutcome (const FaultedUpdate& update)
    {
        const auto& updater = *update.updater;
        const auto& controller = update.controller;
        const auto isComplete = updater.status() == UPDATER_STATUS_COMPLETE;
        const auto isWhole = missingOf (controller).empty();
        expect (update.shown == std::vector { UPDATER_STATUS_READY, UPDATER_STATUS_UPDATING, updater.status() },
                "there is one outcome");
        expect (! update.sendsAfterEnd, "nothing is sent after the outcome");
        expect (update.awake.expired(), "the machine is kept awake only as long as an update runs");
        expect (isComplete == (updater.failure().cause == UpdateFailure::Cause::none), "an error has its cause");
        expect (! controller.receivedBlocks().contains (2), "no block that is not enabled");

        if (isComplete)
            expect (controller.isUpdated() == isWhole && updater.deviceVersion() == (isWhole ? 105 : 100),
                    "the controller has its new version exactly if all blocks are whole");
    }

    void compare (const FaultedUpdate& update, const FaultScript& faults)
    {
        using namespace std::chrono_literals;

        // Timers may be a little early. A loaded machine takes what it takes, but less than any limit, and a write that the system
        // gives up takes 5 s.
        constexpr auto early = 50ms;
        constexpr auto late = 8s;

        Conversation reference ({ 200, -50, 100 }, faults); // with blocks as those of the small package
        UpdateSequence sequence (reference, reference.info, reference.blocks);
        expect (sequence.run() == (update.updater->status() == UPDATER_STATUS_COMPLETE),
                "complete, or not, as without threads");
        byProtocol = reference.now;

        auto expected = sequence.failure();
        auto seen = update.updater->failure();
        const auto times = std::to_string (update.duration / 1ms) + " ms of " + std::to_string (reference.now / 1ms);
        const auto mayEndEarly = expected.cause == UpdateFailure::Cause::interrupted; // it is seen when it happens
        expect (mayEndEarly || (seen.waited >= expected.waited - early && update.duration >= reference.now - early),
                "no wait ends early: " + times);
        expect (seen.waited <= expected.waited + late && update.duration <= reference.now + late,
                "every wait ends: " + times);

        expected.waited = seen.waited = {};
        expect (seen == expected, "what went wrong first is what does without threads");
        expect (missingOf (update.controller) == reference.missing(),
                "the blocks that are whole are those without threads");

        for (const auto& error : update.controller.hostErrors())
            expect (false, "only legal orders: " + error);
    }

    /** Whether a controller with these faults says more than the one answer that the protocol allows it for a request: "busy" to
        other requests than block data, or when it has finished. */
    static bool breaksTheOrder (const FaultScript& faults)
    {
        return std::ranges::any_of (
            faults,
            [] (const Fault& fault)
            {
                const auto code = smallUpdate[std::min (fault.first, smallUpdate.size()) - 1];
                const auto isBusy = fault.kind == Fault::Kind::busy || fault.kind == Fault::Kind::burst;
                return (isBusy && code != 0xF3)
                       || (fault.kind == Fault::Kind::wrong && fault.value == 0xF7 && code == 0xF2);
            });
    }

    /** The numbers of the blocks that were to be written but were not received whole. */
    static std::vector<std::uint8_t> missingOf (const VirtualController& controller)
    {
        std::vector<std::uint8_t> numbers;
        std::uint8_t number = 0;

        for (const auto& block : smallPackage().blocks)
        {
            const auto found = controller.receivedBlocks().find (++number);

            if (block.enabled && (found == controller.receivedBlocks().end() || found->second != block.data))
                numbers.push_back (number);
        }

        return numbers;
    }
};

} // namespace wqv
