// SPDX-License-Identifier: GPL-3.0-or-later
// What the conversation promises, whatever the controller does, and wherever it is stopped.

#include "Conversation.h"

#include <gtest/gtest.h>

#include <array>

namespace wqv
{
namespace
{

using namespace std::chrono_literals;
using Kind = Fault::Kind;
using Errors = std::vector<std::string>;

/** Enabled blocks with and without data, a disabled one between them. */
const std::vector<int> blockSizes { 300, -50, 126, 0, 127 };

const std::array<ControllerPace, 2> paces {
    ControllerPace {},
    ControllerPace { .restart = 50ms, .erase = 40ms, .write = 5ms, .complete = 150ms, .busyPolls = 3 }
};

using Faults = std::vector<Fault>;

const Faults wrongAnswers { { .kind = Kind::silent },
                            { .kind = Kind::wrong, .value = 0x55 },
                            { .kind = Kind::brief },
                            { .kind = Kind::late, .value = 9900 },
                            { .kind = Kind::late, .value = 180001 } };

const Faults unplugs { { .kind = Kind::unplug }, { .kind = Kind::leave } };
const Faults replugs { { .kind = Kind::replug }, { .kind = Kind::replug, .value = 5000 } };

/** An update with a fault at one of its requests. */
struct FaultyUpdate
{
    const Conversation& update;
    bool isComplete = false;
    Fault fault;
    std::size_t last = 0; ///< how many requests it takes without a fault
    Request request {};   ///< the one that the fault is at
};

/** With each of the faults at each of the requests: what a test checks, and what holds in every case. */
template <typename Check>
void atEveryRequest (const Faults& faults, Check&& check)
{
    for (const auto& pace : paces)
    {
        Conversation clean (blockSizes, {}, pace);
        ASSERT_TRUE (clean.run());
        ASSERT_TRUE (clean.controller.isUpdated());

        for (std::size_t n = 1; n <= clean.requests.size(); ++n)
            for (auto fault : faults)
            {
                SCOPED_TRACE (testing::Message() << "fault " << static_cast<int> (fault.kind) << ':' << fault.value
                                                 << " at request " << n << " of " << clean.codes());
                fault.first = fault.last = n;
                Conversation update (blockSizes, { fault }, pace);
                const auto isComplete = update.run();
                check (FaultyUpdate { update, isComplete, fault, clean.requests.size(), clean.requests[n - 1] });

                // Every wait ends: only "enter update mode" is repeated without an answer; the longest limit is 180 s.
                EXPECT_LE (update.requests.size(), clean.requests.size() + 14);
                EXPECT_LE (update.now, 200s);
                EXPECT_EQ (update.controller.hostErrors(), Errors {}) << "no legal order of requests";
            }
    }
}

TEST (Promises, anUnplugAtAnyRequestIsNeverComplete)
{
    // One that follows the answer to the last request comes too late to matter.
    atEveryRequest (
        unplugs,
        [] (const FaultyUpdate& outcome)
        { EXPECT_EQ (outcome.isComplete, outcome.fault.kind == Kind::leave && outcome.fault.first == outcome.last); });
}

TEST (Promises, pluggedInAgainNeither)
{
    // A controller that has not entered update mode yet is asked again: nothing was written before.
    atEveryRequest (replugs,
                    [] (const FaultyUpdate& outcome)
                    {
                        EXPECT_EQ (outcome.isComplete, outcome.fault.first == 1);
                        EXPECT_TRUE (! outcome.isComplete || outcome.update.missing().empty());
                    });
}

TEST (Promises, anUpdateThatCompletesWroteEveryByte)
{
    atEveryRequest (wrongAnswers,
                    [] (const FaultyUpdate& outcome)
                    {
                        const auto& [update, isComplete, fault, last, request] = outcome;
                        const auto isHarmless = fault.kind == Kind::brief || fault.value == 9900;
                        const auto leavesBlockOut = fault.kind == Kind::wrong && request[0] == 0xF1;
                        EXPECT_EQ (isComplete, isHarmless || fault.first == 1 || leavesBlockOut);

                        if (! isComplete)
                            return;

                        for (const auto number : update.missing())
                            EXPECT_TRUE (leavesBlockOut && number == request[1]);

                        EXPECT_EQ (update.controller.isUpdated(), update.missing().empty());
                        EXPECT_EQ (update.waits.back().answer.code, ResponseCode::updateFinished);
                    });
}

TEST (Promises, aLateAnswerToUpdateModeNeverCounts)
{
    Conversation clean (blockSizes, {}, paces[1]);
    ASSERT_TRUE (clean.run());

    // The first request is answered when the second has been, at each millisecond of the update.
    for (std::uint32_t time = 0; time < clean.now / 1ms; ++time)
    {
        SCOPED_TRACE (time);
        Conversation update (blockSizes, { { .kind = Kind::late, .value = 10000 + time } }, paces[1]);
        EXPECT_TRUE (update.run());
        EXPECT_TRUE (update.controller.isUpdated());
        EXPECT_EQ (update.controller.hostErrors(), Errors {});
    }

    // One that nobody is owed is an answer, and a wrong one.
    Conversation wrong (blockSizes, { { .kind = Kind::late, .first = 4, .last = 4, .value = 2000 } });
    wrong.schedule ({ .delay = 1s, .report = { 0xF6, 1 } });
    EXPECT_FALSE (wrong.run());
}

TEST (Promises, afterAStopNothingIsSentButOneFinish)
{
    for (const auto& pace : paces)
        for (std::size_t step = 0;; ++step)
        {
            SCOPED_TRACE (testing::Message() << "step " << step);
            Conversation update (blockSizes, {}, pace);
            update.stopAt = step;
            const auto result = update.run();

            if (! update.stopRequested())
            {
                EXPECT_GT (step, 3 * update.requests.size());
                break;
            }

            const auto codes = update.codes();
            const auto before = codes.substr (0, update.requestsAtStop);
            const auto isInBlock = before.find ('1') < before.size() && before.find ('2') >= before.size();
            EXPECT_EQ (codes.substr (before.size()), isInBlock ? "2" : "");

            // Too late: the controller had confirmed the end.
            const auto isConfirmed = update.waits.back().answer.code == ResponseCode::updateFinished;
            EXPECT_EQ (result, isConfirmed);
            EXPECT_TRUE (! isConfirmed || update.controller.isUpdated());
            EXPECT_EQ (update.controller.hostErrors(), Errors {});
        }
}

TEST (Promises, aControllerThatTakesNoReportIsNotToldOfAStop)
{
    Conversation update (blockSizes, { { .kind = Kind::hold, .first = 5, .last = 99 } });
    update.stopAt = 12; // as the fifth request has gone
    EXPECT_FALSE (update.run());
    EXPECT_EQ (update.codes(), "40133");
}

} // namespace
} // namespace wqv
