// SPDX-License-Identifier: GPL-3.0-or-later
// Whole runs with a virtual controller, and the words for each cause.

#include "Session.h"
#include "UpdaterFixture.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace wqv
{
namespace
{

/** Why there is no controller when one has just been updated. */
constexpr const char* hadItsTurn = "there is a controller that has had its turn: unplug it first";

/** A session and all around it; it notes what it is told. */
class SessionRun final : public UpdaterSurroundings, private Reporter
{
public:
    using UpdaterSurroundings::UpdaterSurroundings;

    void start (bool repeats, const std::vector<std::string>& answersToGive = {})
    {
        answers = answersToGive;
        Session::Settings settings;
        settings.package = folder.path (packageFileName);
        settings.repeats = repeats;
        settings.asks = ! answers.empty();
        settings.readAnswer = [this] (const auto& callback)
        { juce::MessageManager::callAsync ([this, callback] { callback (answers.at (answersGiven++)); }); };
        settings.onEnd = [this] { isOver = true; };
        session.emplace (roster, static_cast<Reporter&> (*this), std::move (settings));
        session->start();
    }

    void runUntilWaiting()
    {
        notes.clear();
        loop.runUntil ([this] { return ! notes.empty() && notes.back() == hadItsTurn; });
    }

    std::vector<std::string> notes;
    std::vector<Outcome> outcomes;
    std::vector<std::string> answers;
    std::size_t answersGiven = 0;
    bool isOver = false;
    DeviceRoster roster { service };
    std::optional<Session> session;

private:
    void devices (const std::vector<DeviceRoster::Entry>&, const std::optional<HidDevice>&) override {}
    void waiting (const std::string& reason) override { notes.push_back (reason); }
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

    const std::pair<UpdateFailure::Cause, std::string> table[] {
        { none, "the update could not be started, or was left at its very end" },
        { noData, "the blocks of the package hold no data; nothing was sent" },
        { notSent, "the system did not take " + request + "; no answer came" + rest },
        { noAnswer, "no answer to " + request + "; none came" + rest },
        { wrongAnswer, "a wrong answer to " + request + "; 0x55 with the value 7 came" + rest },
        { interrupted,
          "the controller went away, or came back, before its answer to " + request + "; it did so" + rest },
        { stopped, "the update was asked to end at " + request },
    };

    for (const auto& [cause, words] : table)
    {
        auto failure = piece;
        failure.cause = cause;
        EXPECT_EQ (describe (failure), words);
    }

    EXPECT_TRUE (
        describe ({ .cause = noAnswer, .expected = ResponseCode::updateMode }).ends_with ("(0xF6) with the value 1"));
}

TEST (Session, namesTheCauseOfAFault)
{
    SessionRun run ("wrong@5:0xF9");
    run.plugIn();
    run.start (false);
    run.loop.runUntil ([&] { return run.isOver; });

    EXPECT_EQ (run.session->exitStatus(), ExitStatus::failed);
    const auto failure = run.outcomes.at (0).failure.value();
    EXPECT_EQ (failure.cause, UpdateFailure::Cause::wrongAnswer);
    EXPECT_EQ (failure.request, RequestCode::blockData);
    EXPECT_EQ (failure.block, 1);
    EXPECT_EQ (failure.piece, 1);
}

TEST (Session, takesAControllerAgainOnlyWhenItComesBack)
{
    SessionRun run;
    run.plugIn();
    run.start (true);
    run.runUntilWaiting();
    EXPECT_EQ (run.notes, (std::vector<std::string> { "100", "1complete", hadItsTurn }));

    // It restarts with its new firmware; then it is unplugged by hand.
    run.unplug();
    run.plugIn();
    run.loop.drain();
    EXPECT_EQ (run.controller.codes(), smallUpdate);
    run.unplug();
    run.plugIn();
    run.runUntilWaiting();
    EXPECT_EQ (run.notes, (std::vector<std::string> { "105", "2complete", hadItsTurn }));

    run.session->stop();
    EXPECT_EQ (run.notes.back(), "2+0");
    EXPECT_EQ (run.session->exitStatus(), ExitStatus::complete);
}

TEST (Session, takesAControllerThatCameWhenAnotherHadGone)
{
    SessionRun run ("replug@4:0");
    run.plugIn();
    run.start (true);
    run.runUntilWaiting();
    EXPECT_EQ (run.notes, (std::vector<std::string> { "100", "1failed", "100", "2complete", hadItsTurn }));
}

TEST (Session, asksAndStops)
{
    // No; then yes, and stopped when a block is announced and its data not answered.
    SessionRun run ("silent@4");
    run.plugIn();
    run.start (true, { "", "y" });
    run.runUntilWaiting();
    EXPECT_EQ (run.notes, (std::vector<std::string> { "100", "1declined", hadItsTurn }));
    EXPECT_EQ (run.controller.codes(), std::vector<int> {});

    run.unplug();
    run.plugIn();
    run.runUntilSent (4);
    run.session->stop();
    EXPECT_TRUE (run.isOver);
    EXPECT_EQ (run.session->exitStatus(), ExitStatus::failed);
    EXPECT_EQ (run.outcomes.back().result, Result::stopped);
    EXPECT_EQ (run.outcomes.back().failure.value().cause, UpdateFailure::Cause::stopped);
    EXPECT_EQ (run.controller.codes(), (std::vector { 0xF4, 0xF0, 0xF1, 0xF3, 0xF2 }));
    EXPECT_EQ (run.controller.hostErrors(), std::vector<std::string> {});
}

} // namespace
} // namespace wqv
