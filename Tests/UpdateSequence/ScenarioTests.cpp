// SPDX-License-Identifier: GPL-3.0-or-later
// The conversation, case by case: what is sent, how long is waited, what comes of it.

#include "Conversation.h"

#include <gtest/gtest.h>

#include <string_view>

namespace wqv
{
namespace
{

using namespace std::chrono_literals;

TEST (Scenarios, requestsLimitsAndResult)
{
    struct Scenario
    {
        std::string_view faults;
        bool result;
        std::string codes;
        std::vector<int> limits {}; ///< seconds; empty: not looked at
        ControllerPace pace {};
        std::vector<int> sizes = sampleSizes;
        bool leavesBus = false;              ///< to restart
        std::vector<std::uint8_t> before {}; ///< a report that lay there unasked
    };

    using Seconds = std::vector<int>;
    const std::string fifteen (15, '4');

    // clang-format off
    const Scenario scenarios[] {
        { "", true, "401333131332", { 10, 10, 10, 180, 180, 180, 10, 180, 10, 180, 180, 10 } },

        { "notYet@1-14",        true,  fifteen + "01333131332" },
        { "notYet@1-15",        false, fifteen },
        { "silent@1-15",        false, fifteen, Seconds (15, 10) },
        { "late@1:10001",       true,  "4401333131332" },
        { "late@1:12000,silent@3", false, "440", { 10, 10, 10, 8 } },
        { "notYet@1,late@2:15000", true,  "44401333131332", {}, { .erase = 8s } },
        { "",                   true,  "4401333131332",  {}, { .restart = 10001ms, .erase = 4s } }, // each of two is late
        { "notYet@1,refuse@2",  false, "44" },
        { "brief@1,notYet@1",   true,  "4401333131332" },
        { "wrong@1:0x55",       true,  "4401333131332" },
        { "wrong@1:0xF8",       true,  "4401333131332" },
        { "wrong@2:0xF6",       false, "40" },

        { "wrong@2:0xF8,wrong@4:0xF9,wrong@6:0xFB,wrong@12:0xFC", true, "401333131332" },
        { "wrong@3:0xF8",       true,  "401131332" },
        { "wrong@3:0",          false, "4012" },
        { "unplug@9",           false, "4013331312", { 10, 10, 10, 180, 180, 180, 10, 180, 10, 10 } },
        { "hold@3",             false, "4012" },

        { "wrong@4:0xFB",       false, "40132" },
        { "wrong@6:0xF9",       false, "4013332" },
        { "wrong@6:0xFE",       true,  "401333131332" },
        { "wrong@11:0xFB",      true,  "401333131332" },
        { "busy@4:3",           true,  "40132", { 10, 10, 10, 180, 20, 20, 20, 10 }, { .write = 19999ms }, { 126 } },
        { "busy@4:1",           false, "40132", { 10, 10, 10, 180, 20, 10 },         { .write = 20001ms } },
        { "busy@5:9,wrong@5:0", false, "401332" },

        { "wrong@12:0xF9",      false, "401333131332" },
        { "silent@13",          false, "4013331313322", {}, { .busyPolls = 2 } },
        { "",                   true,  "401333131332" + std::string (200, '2'), {}, { .busyPolls = 200 } },

        { "", false, "",       {}, {}, { 0, 0 } },
        { "", true,  "402",    {}, {}, { -10, -20 } },
        { "", true,  "401132", {}, {}, { 0, 5 } },

        { "",         true, "44401333131332", {}, { .restart = 9s }, sampleSizes, true },
        { "notYet@1", true, "444401333131332", {}, { .restart = 9s }, sampleSizes, true },

        // A report from before counts for the first request alone, and when that has waited in vain.
        { "silent@1", true,  "40132",  {}, {}, { 5 }, false, { 0xF6, 1 } },
        { "silent@1", true,  "440132", {}, {}, { 5 }, false, { 0xF6, 0 } },
        { "silent@1", false, "4",      {}, {}, { 5 }, false, { 0xF6, 2 } },
    };
    // clang-format on

    for (const auto& [faults, result, codes, limits, pace, sizes, leavesBus, before] : scenarios)
    {
        SCOPED_TRACE (std::string (faults) + " -> " + codes);
        const auto script = parseFaultScript (faults);
        ASSERT_TRUE (script);

        Conversation update (sizes, *script, pace);
        update.mailbox.store (before, false);

        if (leavesBus)
            update.controller.leaveBusToRestart();

        EXPECT_EQ (update.run(), result);
        EXPECT_EQ (update.codes(), codes);

        // To go on by a report from before is to ask while an answer is owed.
        if (before.empty())
        {
            EXPECT_EQ (update.controller.hostErrors(), std::vector<std::string> {});
        }

        Seconds waited;

        for (const auto& wait : update.waits)
            waited.push_back (static_cast<int> (wait.limit / 1s));

        EXPECT_EQ (waited, limits.empty() ? waited : limits);

        const std::vector pauseAfterEachPoll (result ? codes.size() - codes.find ('2') : 0, 100ms);
        EXPECT_EQ (update.pauses, result ? pauseAfterEachPoll : update.pauses);
    }
}

TEST (Scenarios, theFirstFailureIsNamed)
{
    using enum UpdateFailure::Cause;
    using Request = RequestCode;
    using Response = ResponseCode;
    constexpr auto any = std::numeric_limits<std::size_t>::max();

    struct Case
    {
        std::string_view faults;
        UpdateFailure failure;
        std::size_t stopAt = any;
        std::vector<int> sizes = sampleSizes;
    };

    // clang-format off
    const Case cases[] {
        { "",            {} },
        { "wrong@3:0xF8", {} },
        { "",            { noData }, any, { 0, 0 } },
        { "silent@1-15", { noAnswer,    Request::enterUpdateMode, 0, 0, Response::updateMode,      {}, 0, 10s } },
        { "notYet@1-15", { wrongAnswer, Request::enterUpdateMode, 0, 0, Response::updateMode,      Response::updateMode, 0 } },
        { "refuse@1",    { wrongAnswer, Request::enterUpdateMode, 0, 0, Response::updateMode,      Response::updateMode, 2 } },
        { "unplug@1",    { interrupted, Request::enterUpdateMode, 0, 0, Response::updateMode } },
        { "unplug@2",    { interrupted, Request::packageSummary,  0, 0, Response::summaryAccepted } },
        { "hold@3",      { notSent,     Request::blockHeader,     1, 0, Response::ready,           {}, 0, 10s } },
        { "wrong@3:0",   { wrongAnswer, Request::blockHeader,     1, 0, Response::ready } },
        { "wrong@5:0xFB,silent@6", { wrongAnswer, Request::blockData, 1, 1, Response::ready, Response::blockAccepted, 45 } },
        { "silent@10",   { noAnswer,    Request::blockData,       4, 0, Response::ready,           {}, 0, 180s } },
        { "unplug@11",   { interrupted, Request::blockData,       4, 1, Response::blockAccepted } },
        { "late@12:10001", { noAnswer,  Request::finish,          0, 0, Response::updateFinished,  {}, 0, 10s } },
        { "",            { stopped,     Request::enterUpdateMode, 0, 0, Response::updateMode },    0 },
        { "",            { stopped,     Request::blockData,       1, 1, Response::ready },         12 },
    };
    // clang-format on

    for (const auto& [faults, expected, stopAt, sizes] : cases)
    {
        SCOPED_TRACE (testing::Message() << faults << ' ' << stopAt);
        Conversation update (sizes, *parseFaultScript (faults));
        update.stopAt = stopAt;

        UpdateSequence sequence (update, update.info, update.blocks);
        EXPECT_EQ (sequence.run(), expected.cause == none);
        EXPECT_EQ (sequence.failure(), expected);
    }
}

TEST (Scenarios, progressIsTheControllersOwnFigure)
{
    using Fractions = std::vector<double>;

    Conversation update ({ 126, 126 }, *parseFaultScript ("busy@4:2"), { .write = 1ms, .busyPolls = 1 });
    EXPECT_TRUE (update.run());
    EXPECT_EQ (update.progress, (Fractions { 0, 0.5, 0.5, 0.5, 1.0, 1.0, 1.0 }));

    // What no controller should say is shown as it is; what no step accepts is not shown.
    Conversation beyond ({ 126 }, *parseFaultScript ("late@4:1000,wrong@4:0xF9"));
    beyond.schedule ({ .delay = 500ms, .report = { 0xF7, 150 } });
    EXPECT_FALSE (beyond.run());
    EXPECT_EQ (beyond.progress, (Fractions { 0, 1.5, 1.0 }));
}

TEST (Scenarios, faultsThatCannotHappenAreRefused)
{
    for (const auto* const script :
         { "unplug@0", "silent@40-30", "late@1:", "unplug", "unplugged@1", "silent@1:9", "wrong@7:0x1F8", "late@4" })
        EXPECT_FALSE (parseFaultScript (script)) << script;
}

TEST (Scenarios, theControllerNotesWhatTheHostDoesWrong)
{
    Conversation update ({ 127 });
    ASSERT_TRUE (update.run());
    update.requests.push_back (update.requests[4]); // the last piece
    update.requests.back()[2] ^= 1;

    const std::pair<std::vector<std::size_t>, std::string> cases[] { { { 1 }, "outside update mode" },
                                                                     { { 0, 1, 3 }, "out of turn" },
                                                                     { { 0, 1, 2, 3, 6 }, "CRC-16" },
                                                                     { { 0, 1, 5, 5 }, "without an update" } };

    for (const auto& [places, error] : cases)
    {
        VirtualController controller;

        for (const auto place : places)
            for (const auto& event : controller.receive (update.requests[place]).events)
                controller.happens (event);

        const auto& errors = controller.hostErrors();
        EXPECT_TRUE (! errors.empty() && errors.back().ends_with (error)) << testing::PrintToString (errors);
    }
}

} // namespace
} // namespace wqv
