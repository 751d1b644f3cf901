// SPDX-License-Identifier: GPL-3.0-or-later
// Whole runs with a virtual controller, and the words for each cause.

#include "Session.h"
#include "UpdaterFixture.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace wqv
{
namespace
{

/** A session and all around it; it notes what it is told. */
class SessionRun final : public UpdaterSurroundings, private Reporter
{
public:
    using UpdaterSurroundings::UpdaterSurroundings;

    void start (bool repeats, const std::vector<std::string>& answersToGive = {})
    {
        answers = answersToGive;
        session.emplace (roster,
                         static_cast<Reporter&> (*this),
                         Session::Settings { .package = folder.path (packageName),
                                             .asks = ! answers.empty(),
                                             .repeats = repeats,
                                             .readAnswer =
                                                 [this] (const auto& callback)
                                             {
                                                 juce::MessageManager::callAsync (
                                                     [this, callback]
                                                     {
                                                         const auto answer = answers.front();
                                                         answers.erase (answers.begin());
                                                         callback (answer);
                                                     });
                                             },
                                             .onEnd = [this] { isOver = true; } });
        session->start();
    }

    void runUntilOver()
    {
        loop.runUntil ([this] { return isOver; });
    }

    void runUntilWaiting()
    {
        notes.clear();
        loop.runUntil ([this] { return ! notes.empty() && notes.back() == "waiting"; });
    }

    std::vector<std::string> notes;
    std::vector<Outcome> outcomes;
    std::vector<std::string> answers;
    bool isOver = false;
    DeviceRoster roster { requests };
    std::optional<Session> session;

private:
    static constexpr const char* packageName = "WQV-KRV20_UP.upd";

    void devices (const std::vector<DeviceRoster::Entry>&, const std::optional<HidDevice>&) override {}
    void waiting() override { notes.emplace_back ("waiting"); }
    void question() override {}
    void answered() override {}
    void progress (double) override {}
    void outcome (const Outcome& outcome) override
    {
        notes.emplace_back (std::to_string (outcome.number) + nameOf (outcome.result).data());
        outcomes.push_back (outcome);
    }
    void versions (std::int32_t ofController, std::int32_t, int) override
    {
        notes.push_back (std::to_string (ofController));
    }
    void summary (int complete, int notComplete) override
    {
        notes.push_back (std::to_string (complete) + "+" + std::to_string (notComplete));
    }
};

TEST (Words, forEachCause)
{
    using enum UpdateFailure::Cause;
    using namespace std::chrono_literals;

    const UpdateFailure piece { .request = RequestCode::blockData,
                                .block = 3,
                                .piece = 39,
                                .expected = ResponseCode::blockAccepted,
                                .received = ResponseCode { 0x55 },
                                .value = 7,
                                .waited = 180s };
    const std::string request = "the request: block data (0xF3), block 3, piece 40";
    const std::string rest = " after 180.000 s, expected was block accepted (0xFB) or block verified (0xFE)";

    const std::array<std::pair<UpdateFailure::Cause, std::string>, 7> table {
        { { none, "the update could not be started, or was left at its very end" },
          { noData, "the blocks of the package hold no data; nothing was sent" },
          { notSent, "the system did not take " + request + "; no answer came" + rest },
          { noAnswer, "no answer to " + request + "; none came" + rest },
          { wrongAnswer, "a wrong answer to " + request + "; 0x55 with the value 7 came" + rest },
          { interrupted,
            "the controller went away, or came back, before its answer to " + request + "; it did so" + rest },
          { stopped, "the update was asked to end at " + request } }
    };

    for (const auto& [cause, words] : table)
    {
        auto failure = piece;
        failure.cause = cause;
        EXPECT_EQ (describe (failure), words);
    }
}

/** But for the time, which is another one in every run. */
std::string describedWithoutTime (UpdateFailure failure)
{
    constexpr std::string_view time = " after 0.000 s";
    failure.waited = {};
    auto text = describe (failure);

    if (const auto place = text.find (time); place != std::string::npos)
        text.erase (place, time.size());

    return text;
}

TEST (Session, namesTheCauseOfAFault)
{
    const std::array<std::pair<std::string, std::string>, 9> table {
        { { "", "" },
          { "refuse@1",
            "a wrong answer to the request: enter update mode (0xF4); update mode (0xF6) with the value 2 came, expected "
            "was update mode (0xF6)" },
          { "wrong@2:0x55",
            "a wrong answer to the request: package summary (0xF0); 0x55 with the value 0 came, expected was summary "
            "accepted (0xF8)" },
          { "unplug@2",
            "the controller went away, or came back, before its answer to the request: package summary (0xF0); it did so, "
            "expected was summary accepted (0xF8)" },
          { "replug@3:0",
            "the controller went away, or came back, before its answer to the request: block header (0xF1), block 1; it "
            "did so, expected was ready (0xF9)" },
          { "wrong@4:0xF8",
            "a wrong answer to the request: block data (0xF3), block 1, piece 1; summary accepted (0xF8) with the value 42 "
            "came, expected was ready (0xF9)" },
          { "wrong@5:0xF9",
            "a wrong answer to the request: block data (0xF3), block 1, piece 2; ready (0xF9) with the value 66 came, "
            "expected was block accepted (0xFB) or block verified (0xFE)" },
          { "replug@7:0",
            "the controller went away, or came back, before its answer to the request: block data (0xF3), block 3, piece "
            "1; it did so, expected was block accepted (0xFB) or block verified (0xFE)" },
          { "wrong@8:0xF6",
            "a wrong answer to the request: finish (0xF2); update mode (0xF6) with the value 100 came, expected was update "
            "finished (0xFC)" } }
    };

    for (const auto& [fault, words] : table)
    {
        SCOPED_TRACE (fault);
        SessionRun run (fault);
        run.plugIn();
        run.start (false);
        run.runUntilOver();

        ASSERT_EQ (run.outcomes.size(), 1U);
        EXPECT_EQ (run.session->exitStatus(), words.empty() ? ExitStatus::complete : ExitStatus::failed);
        EXPECT_TRUE (! words.empty() || run.controller.isUpdated());
        const auto& failure = run.outcomes.front().failure;
        EXPECT_EQ (failure ? describedWithoutTime (*failure) : "", words);
    }
}

TEST (Session, takesAControllerAgainOnlyWhenItComesBack)
{
    SessionRun run;
    run.plugIn();
    run.start (true);
    run.runUntilWaiting();
    EXPECT_EQ (run.notes, (std::vector<std::string> { "100", "1complete", "waiting" }));

    // It restarts with its new firmware; then it is unplugged by hand.
    run.unplug();
    run.plugIn();
    run.loop.drain();
    EXPECT_EQ (run.requests.codes(), smallUpdate);
    run.unplug();
    run.plugIn();
    run.runUntilWaiting();
    EXPECT_EQ (run.notes, (std::vector<std::string> { "105", "2complete", "waiting" }));

    run.session->stop();
    EXPECT_EQ (run.notes.back(), "2+0");
    EXPECT_EQ (run.session->exitStatus(), ExitStatus::complete);
}

TEST (Session, asksAndStops)
{
    // No; then yes, and stopped when a block is announced and its data not answered.
    SessionRun run ("silent@4");
    run.plugIn();
    run.start (true, { "", "y" });
    run.runUntilWaiting();
    EXPECT_EQ (run.notes, (std::vector<std::string> { "100", "1declined", "waiting" }));
    EXPECT_EQ (run.requests.codes(), std::vector<int> {});

    run.unplug();
    run.plugIn();
    run.runUntilSent (4);
    run.session->stop();
    EXPECT_TRUE (run.isOver);
    EXPECT_EQ (run.session->exitStatus(), ExitStatus::failed);
    EXPECT_EQ (run.outcomes.back().result, Result::stopped);
    EXPECT_EQ (run.outcomes.back().failure.value().cause, UpdateFailure::Cause::stopped);
    EXPECT_EQ (run.requests.codes(), (std::vector { 0xF4, 0xF0, 0xF1, 0xF3, 0xF2 }));
    EXPECT_EQ (run.controller.hostErrors(), std::vector<std::string> {});
}

} // namespace
} // namespace wqv
