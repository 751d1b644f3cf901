// SPDX-License-Identifier: GPL-3.0-or-later
// The conversation disturbed or stopped at each of its steps.

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
const std::vector<int> sizes { 300, -50, 126, 0, 127 };

const std::array<ControllerPace, 2> paces {
    ControllerPace {},
    ControllerPace { .restart = 50ms, .erase = 40ms, .write = 5ms, .complete = 150ms, .busyPolls = 3 }
};

TEST (Sweep, everyFaultAtEveryRequest)
{
    constexpr std::array<Fault, 9> faults { { { .kind = Kind::silent },
                                              { .kind = Kind::wrong, .value = 0x55 },
                                              { .kind = Kind::unplug },
                                              { .kind = Kind::leave },
                                              { .kind = Kind::replug },
                                              { .kind = Kind::replug, .value = 5000 },
                                              { .kind = Kind::brief },
                                              { .kind = Kind::late, .value = 9900 },
                                              { .kind = Kind::late, .value = 180001 } } };

    for (const auto& pace : paces)
    {
        Conversation clean (sizes, {}, pace);
        ASSERT_TRUE (clean.run());
        ASSERT_TRUE (clean.controller.isUpdated());
        const auto count = clean.link.requests.size();

        for (std::size_t n = 1; n <= count; ++n)
            for (auto fault : faults)
            {
                SCOPED_TRACE (testing::Message() << "fault " << static_cast<int> (fault.kind) << ':' << fault.value
                                                 << " at request " << n << " of " << clean.link.codes());
                fault.first = fault.last = n;
                Conversation update (sizes, { fault }, pace);
                const auto result = update.run();

                // Only these leave the update whole, or as whole as the controller wants it.
                const auto isHarmless = fault.kind == Kind::brief || fault.value == 9900;
                const auto isOvercome = n == 1 && fault.kind != Kind::unplug && fault.kind != Kind::leave;
                const auto isTooLate = n == count && fault.kind == Kind::leave;
                const auto leavesOut = fault.kind == Kind::wrong && clean.link.codes()[n - 1] == '1';
                EXPECT_EQ (result, isHarmless || isOvercome || isTooLate || leavesOut);

                if (result)
                {
                    EXPECT_EQ (update.link.waits.back().answer.code, ResponseCode::updateFinished);
                    EXPECT_EQ (update.controller.isUpdated(), update.missing().empty());

                    for (const auto number : update.missing())
                        EXPECT_TRUE (leavesOut && number == clean.link.requests[n - 1][1]);
                }

                EXPECT_EQ (update.controller.hostErrors(), Errors {});
                EXPECT_LE (update.link.requests.size(), count + 14);
            }
    }
}

TEST (Sweep, aLateAnswerToUpdateModeAtAnyMoment)
{
    Conversation clean (sizes, {}, paces[1]);
    ASSERT_TRUE (clean.run());

    // The first request is answered when the second has been, at each millisecond of the update.
    for (std::uint32_t time = 0; time < clean.link.now / 1ms; ++time)
    {
        SCOPED_TRACE (time);
        Conversation update (sizes, { { .kind = Kind::late, .value = 10000 + time } }, paces[1]);
        EXPECT_TRUE (update.run());
        EXPECT_TRUE (update.controller.isUpdated());
        EXPECT_EQ (update.controller.hostErrors(), Errors {});
    }

    // Each of two, by a controller that takes longer than the host waits.
    Conversation slow (sizes, {}, { .restart = 10001ms, .erase = 4s });
    EXPECT_TRUE (slow.run());
    EXPECT_EQ (slow.link.codes(),
               "4401333131133"
               "2");

    // One that nobody is owed is an answer, and a wrong one.
    Conversation wrong (sizes, { { .kind = Kind::late, .first = 4, .last = 4, .value = 2000 } });
    wrong.link.schedule ({ .delay = 1s, .report = { 0xF6, 1 } });
    EXPECT_FALSE (wrong.run());
}

TEST (Sweep, aStopAtEveryStep)
{
    for (const auto& pace : paces)
        for (std::size_t step = 0;; ++step)
        {
            SCOPED_TRACE (testing::Message() << "step " << step);
            Conversation update (sizes, {}, pace);
            update.link.stopAt = step;
            const auto result = update.run();

            if (! update.link.stopRequested())
            {
                EXPECT_GT (step, 3 * update.link.requests.size());
                break;
            }

            const auto codes = update.link.codes();
            const auto before = codes.substr (0, update.link.requestsAtStop);
            const auto isInBlock = before.find ('1') < before.size() && before.find ('2') >= before.size();
            EXPECT_EQ (codes.substr (before.size()), isInBlock ? "2" : "");

            // Too late: the controller had confirmed the end.
            const auto isConfirmed = update.link.waits.back().answer.code == ResponseCode::updateFinished;
            EXPECT_EQ (result, isConfirmed);
            EXPECT_TRUE (! isConfirmed || update.controller.isUpdated());
            EXPECT_EQ (update.controller.hostErrors(), Errors {});
        }
}

TEST (Sweep, aControllerThatTakesNoReportIsNotToldOfAStop)
{
    Conversation update (sizes, { { .kind = Kind::hold, .first = 5, .last = 99 } });
    update.link.stopAt = 12; // as the fifth request has gone
    EXPECT_FALSE (update.run());
    EXPECT_EQ (update.link.codes(), "40133");
}

} // namespace
} // namespace wqv
