// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzzes the conversation of an update: a device whose every answer comes from the input, and one that keeps to the protocol but
// for the faults that the input gives it.

#include "Conversation.h"
#include "Fuzz.h"
#include "Rulebook.h"

#include <array>
#include <optional>
#include <span>

namespace wqv
{
namespace
{

using std::chrono::milliseconds;

/** Answers whatever the input says, through the program's mailbox. Behind the end of the input it is silent. */
class InputDevice final : public UpdateSequence::Link
{
public:
    InputDevice (Input& inputToUse, const upd_info_t& info, const FirmwareBlocks& blocks)
        : input (inputToUse), rules (info, blocks)
    {
    }

    Rulebook& rulebook() { return rules; }

private:
    bool send (const Request& request) override
    {
        const auto isTaken = ! std::exchange (refusesNext, false);
        rules.sent (request, isTaken);
        return isTaken;
    }

    Answer wait (milliseconds limit) override
    {
        const auto isOver = input.isOver();
        auto step = input.byte();

        while (! isOver && arrive (step % 8) && step % 16 >= 8)
            step = input.byte();

        auto answer = mailbox.wait (milliseconds {}, [this] { mailbox.turned(); });
        const std::array<milliseconds, 4> left { limit, limit / 2, std::min (limit, milliseconds (1)), {} };
        answer.remaining = answer.signalled ? left.at (step / 16 % 4) : milliseconds {};
        expect (answer.signalled || ! hasInterruption, "no interruption is lost");
        expect (! answerBefore || stopRequested() || answer.code == answerBefore
                    || answerBefore == ResponseCode::updateMode, // before which one of an earlier wait may count
                "an answer before an interruption counts");
        lastAnswer.reset();
        answerBefore.reset();
        hasInterruption = hasInterruption && ! answer.interrupted;
        refusesNext = step >= 192;
        rules.heard (answer, limit);

        if (stopsAfterThis)
            stop();

        return answer;
    }

    /** @returns whether more may arrive before the wait is over */
    bool arrive (unsigned kind)
    {
        switch (kind)
        {
            case 0: // what the host hopes for
            case 1: store ({ rules.rightAnswer(), input.byte() }); break;
            case 2: store ({ input.byte(), input.byte() }); break;
            case 3: store (std::vector (1 + input.byte() % 4, input.byte())); break;

            case 4:
                mailbox.interrupt();
                answerBefore = hasInterruption ? answerBefore : lastAnswer;
                hasInterruption = true;
                break;

            case 5: stop(); break;
            case 6: stopsAfterThis = true; break;
            default: return false;
        }

        return true;
    }

    void store (const std::vector<std::uint8_t>& report)
    {
        const auto code = static_cast<ResponseCode> (report.front());
        mailbox.store (report, true);

        // A late 0xF6 takes no other answer's place.
        if (! lastAnswer || code != ResponseCode::updateMode)
            lastAnswer = code;
    }

    void stop()
    {
        mailbox.stop();
        rules.stopped();
    }

    void pause (milliseconds duration) override { rules.paused (duration); }
    void reportProgress (double fraction) override { rules.shown (fraction); }
    bool stopRequested() const override { return rules.isStopped(); }

    Input& input;
    Rulebook rules;
    ResponseMailbox mailbox;
    bool refusesNext = false;
    bool stopsAfterThis = false;
    bool hasInterruption = false;             ///< that the host has not heard of yet
    std::optional<ResponseCode> lastAnswer;   ///< since the last wait
    std::optional<ResponseCode> answerBefore; ///< before the first interruption since then
};

/** Sizes for a Conversation: negative for a block that is not to be written. */
std::vector<int> sizesFrom (Input& input, std::size_t mostBlocks)
{
    std::vector<int> sizes (input.byte() % (mostBlocks + 1));

    for (auto& size : sizes)
    {
        const auto word = static_cast<int> (input.word());
        size = (word >= 0x8000 ? -1 : 1) * (word % 0x8000 % 260);
    }

    return sizes;
}

void fuzzAnswers (Input& input)
{
    const Conversation package (sizesFrom (input, maximumBlockCount)); // for its package alone
    InputDevice device (input, package.info, package.blocks);
    UpdateSequence sequence (device, package.info, package.blocks);
    const auto isComplete = sequence.run();
    device.rulebook().ended (isComplete, sequence.failure());
}

/** Faults one behind the other: what a request of two of them would mean, nobody says. */
FaultScript faultsFrom (Input& input)
{
    FaultScript faults (input.byte() % 5);
    std::size_t before = 0;

    for (auto& fault : faults)
    {
        fault.kind = static_cast<Fault::Kind> (input.byte() % (static_cast<int> (Fault::Kind::hold) + 1));
        fault.first = before + 1 + input.byte() % 16U;
        fault.last = fault.first + input.byte() % 16U;
        fault.value = fault.kind == Fault::Kind::late || fault.kind == Fault::Kind::replug ? 10 * input.word()
                      : fault.kind == Fault::Kind::wrong                                   ? input.byte()
                                                                                           : input.byte() % 8U;

        // A controller that has said it is in update mode does not say afterwards that it is not.
        if (before > 0 && (fault.kind == Fault::Kind::notYet || fault.kind == Fault::Kind::refuse))
            fault.kind = Fault::Kind::silent;
        else if (fault.kind == Fault::Kind::notYet || fault.kind == Fault::Kind::refuse)
            fault.first = 1;

        before = fault.last;
    }

    return faults;
}

void fuzzFaults (Input& input)
{
    const auto sizes = sizesFrom (input, 4);
    const auto faults = faultsFrom (input);
    const ControllerPace slow { .restart = milliseconds (30 * input.byte()),
                                .erase = milliseconds (40),
                                .write = milliseconds (5),
                                .complete = milliseconds (150),
                                .busyPolls = 3 };
    Conversation update (sizes, faults, input.byte() % 2 == 0 ? slow : ControllerPace {});

    if (const auto step = input.byte(); step != 0)
        update.stopAt = step;

    if (const auto time = input.word(); time != 0)
        update.schedule ({ .kind = Conversation::Event::Kind::unplug, .delay = milliseconds (time) });

    const auto isComplete = update.run();
    auto leavesBlocksOut = false;

    // "Busy" is an answer to block data and to "finish" alone; and a controller that says it has finished has.
    for (const auto& fault : faults)
    {
        const auto isBusy = fault.kind == Fault::Kind::busy || fault.kind == Fault::Kind::burst
                            || (fault.kind == Fault::Kind::wrong && fault.value == 0xF7);
        leavesBlocksOut = leavesBlocksOut || fault.kind == Fault::Kind::wrong;

        for (auto n = fault.first; isBusy && n <= std::min (fault.last, update.requests.size()); ++n)
            if (update.requests[n - 1].front() != 0xF3)
                return;
    }

    for (const auto& error : update.controller.hostErrors())
        std::fprintf (stderr, "%s\n", error.c_str());

    expect (update.controller.hostErrors().empty(), "the virtual controller has nothing to complain of");
    expect (update.now <= std::chrono::minutes (60), "an update ends");

    if (! isComplete)
        return;

    expect (update.waits.back().answer.code == ResponseCode::updateFinished, "complete only if the controller says so");
    expect (update.missing().empty() || leavesBlocksOut, "complete only if every block was written");
}

} // namespace
} // namespace wqv

int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    wqv::Input input ({ data, size });

    if (input.byte() % 4 != 0)
        wqv::fuzzAnswers (input);
    else
        wqv::fuzzFaults (input);

    return 0;
}
