// SPDX-License-Identifier: GPL-3.0-or-later
// A trace is written during an update and read again.

#include "TracedController.h"
#include "TracedHidService.h"
#include "UpdateFailure.h"
#include "UpdaterFixture.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

namespace wqv
{
namespace
{

struct Deaf final : Updater::Listener, HidService::Listener
{
    void updaterChanged() override {}
    void deviceAttached (const HidDevice& /*device*/) override {}
    void deviceRemoved (HidDeviceId /*device*/) override {}
    void reportReceived (HidDeviceId /*device*/, std::size_t /*length*/) override {}
};

/** An update over a service that has the controller. @returns why it failed, without the times */
UpdateFailure updateOver (HidService& service, const UpdaterSurroundings& surroundings)
{
    Deaf listener;
    Updater updater ({ .hidService = service, .folder = surroundings.packageFolder, .quit = [] {} }, listener);
    updater.confirm();
    updater.confirm();
    surroundings.loop.runUntil ([&] { return updater.status() >= UPDATER_STATUS_COMPLETE; });

    auto failure = updater.failure();
    failure.waited = {};
    return failure;
}

TEST (Trace, holdsWhatPassedAndIsReadAgain)
{
    using enum TraceLine::Kind;

    Deaf deaf;
    UpdaterSurroundings surroundings;
    std::stringstream text;
    TraceWriter writer (text);
    TracedHidService traced (surroundings.service, writer);
    surroundings.plugIn();
    EXPECT_EQ (updateOver (traced, surroundings), UpdateFailure {});
    traced.setListener (&deaf);
    surroundings.unplug();

    std::size_t badLine = 0;
    const auto trace = readTrace (text, badLine);
    EXPECT_EQ (badLine, 0U);
    std::string kinds;
    std::vector<int> sentCodes;
    std::string again = "# wqv-trace 1\n";

    for (const auto& line : trace)
    {
        const auto formatted = formatTraceLine (line);
        kinds += formatted.at (formatted.find (' ') + 1);
        again += formatted + "\n";
        EXPECT_GE (line.time, trace.front().time);

        if (line.kind == sent)
            sentCodes.push_back (line.bytes.at (0));

        EXPECT_EQ (line.bytes.size(), line.kind == sent || line.kind == received ? requestSize : 0U);
    }

    EXPECT_EQ (kinds, "ao><><><><><><><><r"); // attached, opened, eight requests and answers, removed
    EXPECT_EQ (sentCodes, smallUpdate);
    EXPECT_EQ (again, text.str());
    EXPECT_EQ (trace.front().device.outputReportLength, requestSize);
}

TEST (Trace, ofAFailureLeadsToTheSameWhenItIsPlayed)
{
    // In a trace, the write that an unplug ends fails.
    for (const std::string fault : { "", "refuse@1", "unplug@2", "unplug@2 !", "wrong@5:0xF9", "wrong@7:0x55" })
    {
        SCOPED_TRACE (fault);
        UpdaterSurroundings surroundings (fault.substr (0, fault.find (' ')));
        std::stringstream text;
        TraceWriter writer (text);
        UpdateFailure recorded;
        surroundings.plugIn();

        {
            TracedHidService traced (surroundings.service, writer);
            recorded = updateOver (traced, surroundings);
        }

        std::size_t badLine = 0;
        auto trace = readTrace (text, badLine);

        if (fault.ends_with ('!'))
            trace.insert (trace.end() - 1, { .time = trace.back().time, .kind = TraceLine::Kind::notTaken });

        TracedController controller (trace);
        SimulatedHidService service;
        service.plugIn (&controller);
        EXPECT_EQ (updateOver (service, surroundings), recorded);
        EXPECT_EQ (recorded.cause == UpdateFailure::Cause::none, fault.empty());
        EXPECT_EQ (controller.firstDifference(), "");
        EXPECT_EQ (controller.versionNumber(), 0x0100);
    }
}

/** A line a millisecond: devices that are Attached, Removed, opened with success (O) or Denied, by their numbers, which
    are their versions too; a request, and "!". */
std::vector<TraceLine> traceOf (std::string_view script)
{
    using enum TraceLine::Kind;

    const std::map<char, TraceLine::Kind> kinds { { 'A', attached }, { 'R', removed }, { 'O', opened },
                                                  { 'D', opened },   { '>', sent },    { '!', notTaken } };
    std::vector<TraceLine> trace;

    for (const auto letter : script)
        if (letter >= '0' && letter <= '9')
            trace.back().device = { .id = static_cast<HidDeviceId> (letter - '0'), .versionNumber = letter - '0' };
        else
            trace.push_back ({ .time = std::chrono::milliseconds (trace.size()),
                               .kind = kinds.at (letter),
                               .result = letter == 'D' ? HidService::OpenResult::denied : HidService::OpenResult::ok });

    return trace;
}

TEST (Trace, isPlayedForTheDeviceThatIsHeld)
{
    // Of each: the version at the start, then what the request leads to, and after how many milliseconds; of what is
    // plugged in the version.
    const std::map<std::string, std::string> cases {
        { "A1O1>!R1A2O2", "1 !1 -2 +3=2" },   { "A1O1A2>R2A3O3", "1" },    { "A1A2O2>R2R1A1O1", "2 -1 +3=1" },
        { "A1O1R1A2O2>A3R2", "2 -2" },        { "A1O1>A2O2R1R2", "1 -4" }, { "A1O1>R1A2A3O2O3R2", "1 -1 +2=2" },
        { "A1O1>R1A2O2R2A3O3", "1 -1 +5=3" }, { "A1O1>R1A2D2", "1 -1" }
    };

    for (const auto& [script, expected] : cases)
    {
        TracedController controller (traceOf (script));
        auto played = std::to_string (controller.versionNumber());
        const auto reaction = controller.receive ({});

        if (! reaction.isTaken)
            played += " !" + std::to_string (reaction.writeLimit.count());

        for (const auto& event : reaction.events)
        {
            const auto isPlugIn = event.kind == SimulatedController::Event::Kind::plugIn;
            controller.happens (event);
            played += (isPlugIn ? " +" : " -") + std::to_string (event.delay.count());
            played += isPlugIn ? "=" + std::to_string (controller.versionNumber()) : "";
        }

        EXPECT_EQ (played, expected) << script;
        EXPECT_EQ (controller.firstDifference(), "");
        EXPECT_TRUE (controller.receive ({}).events.empty());
        EXPECT_EQ (controller.firstDifference(), "request 2 is not the recorded one");
    }
}

TEST (Trace, refusesWhatIsNoLineOfIt)
{
    constexpr auto longest =
        "1.500000 attached 7 vendor=1209 product=0001 version=0105 location=ffffffffffffffff interface=1 "
        "input=128 output=0";

    for (const std::string right :
         { "0.000001 !", "4294967295.999999 < F6 01", "1.500000 removed 7", "1.500000 opened 7 in-use", longest })
    {
        const auto line = parseTraceLine (right);
        ASSERT_TRUE (line) << right;
        EXPECT_EQ (formatTraceLine (*line), right);
        EXPECT_FALSE (parseTraceLine (right.substr (0, right.size() - 1))) << right << ", cut off";
    }

    for (const auto* const wrong :
         { "", "1.5 > F4", "-1.000000 > F4", "1.000000", "1.000000 >F4", "1.000000 > F4 0G", "1.000000 ! F4" })
        EXPECT_FALSE (parseTraceLine (wrong)) << wrong;

    // And the number of the first bad line.
    for (const auto& [whole, wrong] : { std::pair ("# wqv-trace 1\r\n\r\n1.000000 > F4\r\n# comment\r\n", 0U),
                                        { "# wqv-trace 1\n\n1.000000 > F4\nrubbish\n2.000000 < F6\n", 4U },
                                        { "# wqv-trace 9\n1.000000 > F4\n", 1U },
                                        { "1.000000 > F4\n", 1U },
                                        { "", 1U } })
    {
        std::stringstream text (whole);
        std::size_t badLine = 0;
        EXPECT_EQ (readTrace (text, badLine).size(), wrong == 1 ? 0U : 1U) << whole;
        EXPECT_EQ (badLine, wrong) << whole;
    }
}

} // namespace
} // namespace wqv
