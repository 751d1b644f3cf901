// SPDX-License-Identifier: GPL-3.0-or-later
// One update from a made-up package to a virtual controller, on the test's own thread and clock.

#pragma once

#include "Checksums.h"
#include "ResponseMailbox.h"
#include "UpdateSequence.h"
#include "VirtualController.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace wqv
{

/** Package, controller and the link between them; run() once. What the controller does is played as a clock goes on that only
    waits and pauses move. Between the two lies the program's mailbox, so that the sequence sees exactly what it would see
    of it. No wait takes real time. */
class Conversation final : public UpdateSequence::Link
{
public:
    using Milliseconds = std::chrono::milliseconds;
    using Event = VirtualController::Event;

    struct Wait
    {
        Milliseconds limit {};
        Answer answer;
    };

    /** @param sizes  of the blocks; negative for a block that is not enabled */
    explicit Conversation (const std::vector<int>& sizes, FaultScript faults = {}, ControllerPace pace = {})
        : controller (std::move (faults), pace)
    {
        std::minstd_rand random;

        for (const auto size : sizes)
        {
            auto& block = blocks[info.blockCount++];
            block.enabled = size >= 0;
            block.size = static_cast<std::uint32_t> (std::abs (size));
            block.data.resize (block.size);
            std::ranges::generate (block.data, [&] { return static_cast<std::uint8_t> (random()); });
            block.crc16 = static_cast<std::uint16_t> (calcCRC16 (block.data));
            info.totalSize += block.size;
        }
    }

    [[nodiscard]] bool run() { return UpdateSequence (*this, info, blocks).run(); }

    /** The requests as the second digits of their codes: an update of one small block is "40132". */
    [[nodiscard]] std::string codes() const
    {
        std::string digits;

        for (const auto& request : requests)
            digits += static_cast<char> ('0' + request.front() % 16);

        return digits;
    }

    /** The numbers of the blocks that were to be written but were not received whole. */
    [[nodiscard]] std::vector<std::uint8_t> missing() const
    {
        std::vector<std::uint8_t> numbers;

        for (std::uint8_t number = 1; number <= info.blockCount; ++number)
        {
            const auto& block = blocks[number - 1U];
            const auto found = controller.receivedBlocks().find (number);

            if (block.enabled && (found == controller.receivedBlocks().end() || found->second != block.data))
                numbers.push_back (number);
        }

        return numbers;
    }

    void schedule (Event event) { events.emplace (now + event.delay, std::move (event)); }

    [[nodiscard]] bool stopRequested() const override { return isStopped; }

    upd_info_t info { .version = 105 };
    FirmwareBlocks blocks;
    VirtualController controller;
    ResponseMailbox mailbox;

    /** A stop is requested at the n-th step, counted from 0. Each send ends with one, each pause begins with one, and
        each wait does both. */
    std::size_t stopAt = std::numeric_limits<std::size_t>::max();

    // What has come of it.
    std::vector<Request> requests;
    std::vector<Wait> waits;
    std::vector<Milliseconds> pauses;
    std::vector<double> progress;
    Milliseconds now {};
    std::size_t requestsAtStop = 0; ///< sent until a stop was requested

private:
    bool send (const Request& request) override
    {
        requests.push_back (request);
        auto reaction = isPluggedIn ? controller.receive (request) : VirtualController::Reaction { .isTaken = false };

        for (auto& event : reaction.events)
            schedule (std::move (event));

        takeStep();
        return reaction.isTaken;
    }

    Answer wait (Milliseconds limit) override
    {
        takeStep();
        const auto end = now + limit;

        if (! isStopped)
            playUntil (end);

        auto answer = mailbox.wait (Milliseconds {}, [this] { mailbox.turned(); });
        answer.remaining = end - now;
        waits.push_back ({ .limit = limit, .answer = answer });
        takeStep();
        return answer;
    }

    void pause (Milliseconds duration) override
    {
        takeStep();

        // What comes meanwhile is found by the next wait.
        pauses.push_back (duration);
        now += duration;
    }

    void reportProgress (double fraction) override { progress.push_back (fraction); }

    /** Lets happen what is overdue; if that is nothing, goes on to the first instant at which something happens. */
    void playUntil (Milliseconds end)
    {
        while (! events.empty() && events.begin()->first <= end)
        {
            const auto [time, event] = *events.begin();
            events.erase (events.begin());
            now = end = std::max (now, time);
            play (event);
        }

        now = end;
    }

    void play (const Event& event)
    {
        controller.happens (event);

        if (event.kind == Event::Kind::report)
        {
            mailbox.store (event.report, true);
            return;
        }

        isPluggedIn = event.kind == Event::Kind::plugIn;
        mailbox.interrupt();

        // What was under way is lost.
        std::erase_if (events, [] (const auto& entry) { return entry.second.kind == Event::Kind::report; });
    }

    void takeStep()
    {
        if (steps++ != stopAt)
            return;

        isStopped = true;
        requestsAtStop = requests.size();
        mailbox.stop();
    }

    std::multimap<Milliseconds, Event> events;
    std::size_t steps = 0;
    bool isPluggedIn = true;
    bool isStopped = false;
};

/** Blocks of three pieces, one full piece, and a piece and a byte; the second is not sent. */
inline const std::vector<int> sampleSizes { 300, -50, 126, 127 };

} // namespace wqv
