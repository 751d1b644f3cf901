// SPDX-License-Identifier: GPL-3.0-or-later
// A trace is written during an update and read again.

#include "TracedController.h"
#include "TracedHidService.h"
#include "UpdateFailure.h"
#include "UpdaterFixture.h"

#include <gtest/gtest.h>

#include <sstream>

namespace wqv
{
namespace
{

struct Unseen final : Updater::Listener
{
    void updaterChanged() override {}
};

struct Deaf final : HidService::Listener
{
    void deviceAttached (const HidDevice& /*device*/) override {}
    void deviceRemoved (HidDeviceId /*device*/) override {}
    void reportReceived (HidDeviceId /*device*/, std::size_t /*length*/) override {}
};

/** An update over a service that has the controller. @returns why it failed, without the times */
UpdateFailure updateOver (HidService& service, const UpdaterSurroundings& surroundings)
{
    Unseen listener;
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
    std::vector<TraceLine::Kind> kinds;
    std::vector<int> sentCodes;
    std::string again = "# wqv-trace 1\n";

    for (const auto& line : trace)
    {
        kinds.push_back (line.kind);
        again += formatTraceLine (line) + "\n";
        EXPECT_GE (line.time, trace.front().time);

        if (line.kind == sent)
            sentCodes.push_back (line.bytes.at (0));

        EXPECT_EQ (line.bytes.size(), line.kind == sent || line.kind == received ? requestSize : 0U);
    }

    std::vector expected { attached, opened };

    for (std::size_t i = 0; i < smallUpdate.size(); ++i)
        expected.insert (expected.end(), { sent, received });

    expected.push_back (removed);
    EXPECT_EQ (kinds, expected);
    EXPECT_EQ (sentCodes, smallUpdate);
    EXPECT_EQ (again, text.str());
    EXPECT_EQ (trace.front().device.outputReportLength, requestSize);
}

TEST (Trace, ofAFailureLeadsToTheSameWhenItIsPlayed)
{
    for (const auto* const fault : { "", "refuse@1", "unplug@2", "wrong@5:0xF9", "wrong@7:0x55" })
    {
        SCOPED_TRACE (fault);
        UpdaterSurroundings surroundings (fault);
        std::stringstream text;
        TraceWriter writer (text);
        UpdateFailure recorded;
        surroundings.plugIn();

        {
            TracedHidService traced (surroundings.service, writer);
            recorded = updateOver (traced, surroundings);
        }

        std::size_t badLine = 0;
        TracedController controller (readTrace (text, badLine));
        SimulatedHidService service;
        service.plugIn (&controller);
        EXPECT_EQ (updateOver (service, surroundings), recorded);
        EXPECT_EQ (recorded.cause == UpdateFailure::Cause::none, std::string (fault).empty());
        EXPECT_EQ (controller.firstDifference(), 0U);
        EXPECT_EQ (controller.versionNumber(), 0x0100);
    }
}

TEST (Trace, refusesWhatIsNoLineOfIt)
{
    constexpr auto longest =
        "1.500000 attached 7 vendor=1209 product=0001 version=0105 location=ffffffffffffffff interface=1 "
        "input=128 output=0";

    for (const auto* const right :
         { "0.000001 !", "4294967295.999999 < F6 01", "1.500000 removed 7", "1.500000 opened 7 in-use", longest })
    {
        const auto line = parseTraceLine (right);
        ASSERT_TRUE (line) << right;
        EXPECT_EQ (formatTraceLine (*line), right);
    }

    for (const auto* const wrong : { "",
                                     "1.5 > F4",
                                     "-1.000000 > F4",
                                     "1.000000",
                                     "1.000000 >F4",
                                     "1.000000 > F4 0",
                                     "1.000000 > F4 0G",
                                     "1.000000 ! F4",
                                     "1.000000 opened 7 well",
                                     "1.000000 removed",
                                     "1.000000 attached 7 vendor=1209" })
        EXPECT_FALSE (parseTraceLine (wrong)) << wrong;

    std::stringstream text ("# comment\n\n1.000000 > F4\nrubbish\n2.000000 < F6\n");
    std::size_t badLine = 0;
    EXPECT_EQ (readTrace (text, badLine).size(), 1U);
    EXPECT_EQ (badLine, 4U);
}

} // namespace
} // namespace wqv
