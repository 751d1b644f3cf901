// SPDX-License-Identifier: GPL-3.0-or-later
// What docs/protocol.md lets the host of an update do, watched step by step.

#pragma once

#include "Fuzz.h"
#include "UpdateSequence.h"

#include <chrono>
#include <utility>

namespace wqv
{

/** Hears all that the host does and is told, and ends the process at the first thing that is not right. Whoever sends and waits
    tells it so. */
class Rulebook : public UpdateSequence::Link
{
public:
    using Milliseconds = std::chrono::milliseconds;

    Rulebook (const upd_info_t& infoToUse, const FirmwareBlocks& blocksToUse)
        : info (infoToUse), blocks (blocksToUse), step (infoToUse.totalSize == 0 ? Step::over : Step::enter)
    {
    }

    void ended (bool isComplete, const UpdateFailure& failure) const
    {
        expect (step == Step::over || isStopped, "an update is not given up");
        expect (isComplete == (isConfirmed && ! hasFailed), "an update is complete if all of it was confirmed");
        expect (isComplete == (failure.cause == UpdateFailure::Cause::none),
                "a failure has a cause, and only a failure");
        expect (! isStopped || ! isFarewellDue(), "a controller in an update is told that it is over");
    }

    void pause (Milliseconds duration) override
    {
        expect (isPauseDue && duration == Milliseconds (100), "a pause follows the answer to \"finish\"");
        isPauseDue = false;
    }

    void reportProgress (double fraction) override
    {
        expect (last == 0 ? fraction == 0.0 : fraction == value / 100.0, "the progress is the controller's own");
    }

    [[nodiscard]] bool stopRequested() const override { return isStopped; }

protected:
    ~Rulebook() = default;

    void sent (const Request& request, bool isTaken)
    {
        expect (! isWaiting && ! isPauseDue && step != Step::over && (! isStopped || isFarewellDue()),
                "a request comes in its turn");
        const auto [dueRequest, dueAnswer] = due();
        expect (request == dueRequest, "a request is the one that is due, in every byte");

        rightAnswer = dueAnswer;
        last = request[0];
        wasTaken = isTaken;
        isWaiting = ! isStopped;
        limit = Milliseconds (last == 0xF3 ? 180000 : 10000);

        if (last == 0xF4)
        {
            ++modeRequests;
            ++modeAnswersOwed;
        }
    }

    /** A wait for the last request has ended. */
    void heard (const Answer& answer, Milliseconds askedFor)
    {
        expect (isWaiting && askedFor == limit, "a wait is as long as the protocol says");
        value = answer.value;

        if (answer.signalled && answer.code == ResponseCode::updateMode && modeAnswersOwed > 0)
        {
            --modeAnswersOwed;

            if (last != 0xF4)
            {
                limit = answer.remaining;
                return;
            }
        }

        isWaiting = false;
        const auto code = answer.signalled || last == 0xF4 ? static_cast<unsigned> (answer.code) : 0;

        switch (last)
        {
            case 0xF4: modeAnswered (code); break;
            case 0xF0: goOn (code == 0xF8, Step::over); break;
            case 0xF1: headerAnswered (code); break;
            case 0xF3: pieceAnswered (code); break;

            default:
                step = code == 0xF7 ? Step::finish : Step::over;
                isPauseDue = code == 0xF7 || code == 0xFC;
                isConfirmed = code == 0xFC;
                break;
        }
    }

    std::uint8_t rightAnswer = 0; ///< lets the update go on
    bool isStopped = false;

private:
    enum class Step
    {
        enter,
        summary,
        header,
        data,
        finish,
        over
    };

    /** The only request that may come, and the answer that it hopes for. What its bytes are, the tests of the requests say. */
    [[nodiscard]] std::pair<Request, std::uint8_t> due() const
    {
        const auto number = static_cast<std::uint8_t> (current + 1);

        switch (isStopped ? Step::finish : step)
        {
            case Step::enter: return { enterUpdateModeRequest(), 0xF6 };
            case Step::summary: return { packageSummaryRequest (info, blocks), 0xF8 };
            case Step::header: return { blockHeaderRequest (number, blocks[current].size), 0xF9 };
            case Step::data:
                return { blockDataRequest (number, blocks[current].data, piece), isLastPiece() ? 0xFB : 0xF9 };
            default: return { finishRequest(), 0xFC };
        }
    }

    void modeAnswered (unsigned code)
    {
        if (code == 0xF6 && value == 1)
            step = Step::summary;
        else if (isStopped || (code == 0xF6 && value != 0) || modeRequests == 15)
            step = Step::over;

        hasFailed = step == Step::over;
    }

    void headerAnswered (unsigned code)
    {
        piece = 0;

        if (code == 0xF9 && blocks[current].size > 0)
            step = Step::data;
        else
            goOn (code != 0, Step::finish);
    }

    void pieceAnswered (unsigned code)
    {
        if (code == 0xF7)
        {
            isWaiting = true;
            limit = Milliseconds (20000);
        }
        else if (isLastPiece())
            goOn (code == 0xFB || code == 0xFE, Step::finish);
        else if (code == 0xF9)
            ++piece;
        else
            goOn (false, Step::finish);
    }

    /** To the next enabled block, or after a failure to another step. */
    void goOn (bool isRight, Step otherwise)
    {
        hasFailed = hasFailed || ! isRight;
        current = step == Step::summary ? 0 : current + 1;

        while (current < info.blockCount && ! blocks[current].enabled)
            ++current;

        if (! isRight)
            step = otherwise;
        else
            step = current < info.blockCount ? Step::header : Step::finish;
    }

    [[nodiscard]] bool isLastPiece() const { return (piece + 1) * 126 >= blocks[current].size; }

    /** A stop is told, once, to a controller that has been told of a block, unless it takes no report. */
    [[nodiscard]] bool isFarewellDue() const { return wasTaken && (last == 0xF1 || last == 0xF3); }

    const upd_info_t& info;
    const FirmwareBlocks& blocks;

    Step step;
    std::size_t current = 0; ///< index of the block
    std::uint32_t piece = 0;
    unsigned last = 0; ///< code of the last request; 0 before the first
    std::uint8_t value = 0;
    Milliseconds limit {};
    int modeRequests = 0;
    int modeAnswersOwed = 0;
    bool isWaiting = false;
    bool wasTaken = false;
    bool isPauseDue = false;
    bool hasFailed = false;
    bool isConfirmed = false;
};

} // namespace wqv
