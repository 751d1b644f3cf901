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
        bool leavesBus = false; ///< to restart
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
        { "notYet@1,refuse@2",  false, "44" },
        { "brief@1,notYet@1",   true,  "4401333131332" },
        { "wrong@1:0x55",       true,  "4401333131332" },
        { "wrong@1:0xF8",       true,  "4401333131332" },
        { "wrong@2:0xF6",       false, "40" },
        { "leave@12",           true,  "401333131332" },
        { "leave@11",           false, "401333131332" },
        { "late@2:9999",        true,  "401333131332" },

        { "wrong@2:0xF8,wrong@4:0xF9,wrong@6:0xFB,wrong@12:0xFC", true, "401333131332" },
        { "wrong@3:0xF8",       true,  "401131332" },
        { "wrong@3:0",          false, "4012" },
        { "late@7:9999",        true,  "401333131332" },
        { "late@7:10001",       false, "40133312" },
        { "unplug@9",           false, "4013331312", { 10, 10, 10, 180, 180, 180, 10, 180, 10, 10 } },
        { "hold@3",             false, "4012" },

        { "late@4:179999",      true,  "401333131332" },
        { "late@4:180001",      false, "40132" },
        { "wrong@4:0xFB",       false, "40132" },
        { "wrong@6:0xF9",       false, "4013332" },
        { "wrong@6:0xFE",       true,  "401333131332" },
        { "wrong@11:0xFB",      true,  "401333131332" },
        { "busy@4:3",           true,  "40132", { 10, 10, 10, 180, 20, 20, 20, 10 }, { .write = 19999ms }, { 126 } },
        { "busy@4:1",           false, "40132", { 10, 10, 10, 180, 20, 10 },         { .write = 20001ms } },
        { "busy@5:9,wrong@5:0", false, "401332" },

        { "wrong@12:0xF9",      false, "401333131332" },
        { "late@12:9999",       true,  "401333131332" },
        { "silent@13",          false, "4013331313322", {}, { .busyPolls = 2 } },
        { "",                   true,  "401333131332" + std::string (200, '2'), {}, { .busyPolls = 200 } },

        { "", false, "",       {}, {}, { 0, 0 } },
        { "", true,  "402",    {}, {}, { -10, -20 } },
        { "", true,  "401132", {}, {}, { 0, 5 } },
        { "", true,  "401332", {}, {}, { 127 } },

        { "",         true, "44401333131332", {}, { .restart = 9s }, sampleSizes, true },
        { "notYet@1", true, "444401333131332", {}, { .restart = 9s }, sampleSizes, true },
    };
    // clang-format on

    for (const auto& [faults, result, codes, limits, pace, sizes, leavesBus] : scenarios)
    {
        SCOPED_TRACE (std::string (faults) + " -> " + codes);
        const auto script = parseFaultScript (faults);
        ASSERT_TRUE (script);

        Conversation update (sizes, *script, pace);

        if (leavesBus)
            update.controller.leaveBusToRestart();

        EXPECT_EQ (update.run(), result);
        EXPECT_EQ (update.codes(), codes);
        EXPECT_EQ (update.controller.hostErrors(), std::vector<std::string> {});

        Seconds waited;

        for (const auto& wait : update.waits)
            waited.push_back (static_cast<int> (wait.limit / 1s));

        EXPECT_EQ (waited, limits.empty() ? waited : limits);

        const std::vector pauseAfterEachPoll (result ? codes.size() - codes.find ('2') : 0, 100ms);
        EXPECT_EQ (update.pauses, result ? pauseAfterEachPoll : update.pauses);
    }
}

TEST (Scenarios, anAnswerFromBeforeCountsForUpdateModeAlone)
{
    struct Case
    {
        std::vector<std::uint8_t> before;
        bool result;
        std::string codes;
    };

    const Case cases[] { { { 0xF6, 1 }, true, "40132" }, { { 0xF6, 2 }, false, "4" }, { { 0xF6, 0 }, true, "440132" } };

    for (const auto& [before, result, codes] : cases)
    {
        Conversation update ({ 5 }, { { .kind = Fault::Kind::silent, .first = 1, .last = 1 } });
        update.mailbox.store (before, false);
        EXPECT_EQ (update.run(), result);
        EXPECT_EQ (update.codes(), codes);
        EXPECT_EQ (update.now, 10s + (result ? 100ms : 0ms));
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
        std::vector<std::uint8_t> before {};
    };

    // clang-format off
    const Case cases[] {
        { "",            {} },
        { "wrong@3:0xF8", {} },
        { "",            { noData }, any, { 0, 0 } },
        { "silent@1-15", { noAnswer,    Request::enterUpdateMode, 0, 0, Response::updateMode,      {}, 0, 10s } },
        { "notYet@1-15", { wrongAnswer, Request::enterUpdateMode, 0, 0, Response::updateMode,      Response::updateMode, 0 } },
        { "refuse@1",    { wrongAnswer, Request::enterUpdateMode, 0, 0, Response::updateMode,      Response::updateMode, 2 } },
        { "silent@1",    { wrongAnswer, Request::enterUpdateMode, 0, 0, Response::updateMode,      Response::updateMode, 2, 10s }, any, { 5 }, { 0xF6, 2 } },
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

    for (const auto& [faults, expected, stopAt, sizes, before] : cases)
    {
        SCOPED_TRACE (testing::Message() << faults << ' ' << stopAt);
        Conversation update (sizes, *parseFaultScript (faults));
        update.stopAt = stopAt;
        update.mailbox.store (before, false);

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
    for (const auto* const script : { "unplug@0",
                                      "silent@40-30",
                                      "late@1:",
                                      "unplug",
                                      "unplugged@1",
                                      "silent@1-2-3",
                                      "unplug@1-",
                                      "silent@1:9",
                                      "wrong@7:0x1F8",
                                      "late@4" })
        EXPECT_FALSE (parseFaultScript (script)) << script;
}

TEST (Scenarios, theControllerNotesWhatTheHostDoesWrong)
{
    Conversation package ({ 127 });
    const auto& data = package.blocks[0].data;
    const auto mode = enterUpdateModeRequest();
    const auto summary = packageSummaryRequest (package.info, package.blocks);
    const auto header = blockHeaderRequest (1, 127);
    const auto first = blockDataRequest (1, data, 0);
    const auto last = blockDataRequest (1, data, 1);
    const auto end = finishRequest();

    auto damaged = last;
    damaged[2] ^= 1;

    const std::pair<std::vector<Request>, std::string> cases[] {
        { { mode, mode, summary, header, first, last, end }, "" },
        { { summary }, "outside update mode" },
        { { mode, summary, first }, "out of turn" },
        { { mode, summary, header, first, damaged }, "CRC-16" },
        { { mode, summary, end, end }, "without an update" },
    };

    for (const auto& [requests, error] : cases)
    {
        VirtualController controller;

        for (const auto& request : requests)
            for (const auto& event : controller.receive (request).events)
                controller.happens (event);

        const auto& errors = controller.hostErrors();
        EXPECT_EQ (errors.empty(), error.empty()) << error;
        EXPECT_TRUE (errors.empty() || errors.back().ends_with (error)) << errors.back();
    }
}

} // namespace
} // namespace wqv
