// SPDX-License-Identifier: GPL-3.0-or-later
// What docs/protocol.md lets the host of an update do, watched step by step.

#pragma once

#include "Fuzz.h"
#include "UpdateSequence.h"

#include <algorithm>
#include <chrono>

namespace wqv
{

/** Hears all that the host does and is told, and ends the process at the first thing that is not right. */
class Rulebook
{
public:
    using Milliseconds = std::chrono::milliseconds;

    Rulebook (const upd_info_t& infoToUse, const FirmwareBlocks& blocksToUse)
        : info (infoToUse), blocks (blocksToUse), step (infoToUse.totalSize == 0 ? Step::over : Step::enter)
    {
    }

    void sent (const Request& request, bool isTaken)
    {
        const std::span rest (request);
        const auto mayFollow = ! stopRequested || (isFarewellDue() && request[0] == 0xF2);
        expect (mayFollow && ! isWaiting, "a request comes in its turn");
        farewells += stopRequested ? 1 : 0;

        switch (request[0])
        {
            case 0xF4:
                expect (step == Step::enter && ++modeRequests <= 15, "\"enter update mode\" comes first, 15 times");
                ++modeAnswersOwed;
                expectZeros (rest.subspan (1));
                break;

            case 0xF0: expectSummary (rest); break;
            case 0xF1: expectHeader (rest); break;
            case 0xF3: expectPiece (rest); break;

            case 0xF2:
                expect (step == Step::finish || stopRequested, "\"finish\" comes at the end");
                expect (wasSummaryAccepted, "\"finish\" comes after the summary");
                expectZeros (rest.subspan (1));
                break;

            default: expect (false, "only the five requests"); break;
        }

        last = request[0];
        wasTaken = isTaken;
        isWaiting = ! stopRequested;
        limit = Milliseconds (last == 0xF3 ? 180000 : 10000);
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
            case 0xF0:
                wasSummaryAccepted = code == 0xF8;
                goOn (wasSummaryAccepted, Step::over);
                break;

            case 0xF1: headerAnswered (code); break;
            case 0xF3: pieceAnswered (code); break;

            default:
                step = code == 0xF7 ? Step::finish : Step::over;
                isPauseDue = code == 0xF7 || code == 0xFC;
                isConfirmed = code == 0xFC;
                break;
        }
    }

    /** The answer that lets the update go on. */
    [[nodiscard]] std::uint8_t rightAnswer() const
    {
        switch (last)
        {
            case 0xF4: return 0xF6;
            case 0xF0: return 0xF8;
            case 0xF1: return 0xF9;
            case 0xF3: return isLastPiece() ? 0xFB : 0xF9;
            default: return 0xFC;
        }
    }

    void paused (Milliseconds duration)
    {
        expect (isPauseDue && duration == Milliseconds (100), "a pause follows the answer to \"finish\"");
        isPauseDue = false;
    }

    void shown (double fraction) const
    {
        expect (last == 0 ? fraction == 0.0 : fraction == value / 100.0, "the progress is the controller's own");
    }

    void stopped() { stopRequested = true; }
    [[nodiscard]] bool isStopped() const { return stopRequested; }

    void ended (bool isComplete, const UpdateFailure& failure) const
    {
        expect (step == Step::over || stopRequested, "an update is not given up");
        expect (isComplete == (isConfirmed && ! hasFailed), "an update is complete if all of it was confirmed");
        expect (isComplete == (failure.cause == UpdateFailure::Cause::none),
                "a failure has a cause, and only a failure");
        expect (! stopRequested || ! isFarewellDue(), "a controller in an update is told that it is over");
    }

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

    static void expectZeros (std::span<const std::uint8_t> bytes)
    {
        expect (std::ranges::all_of (bytes, [] (auto byte) { return byte == 0; }), "what is not used is 0");
    }

    static std::uint32_t number (std::span<const std::uint8_t> bytes)
    {
        return bytes[0] | static_cast<std::uint32_t> (bytes[1] << 8) | static_cast<std::uint32_t> (bytes[2] << 16);
    }

    void expectSummary (std::span<const std::uint8_t> request) const
    {
        std::uint32_t enabledSize = 0;
        expect (step == Step::summary, "the summary comes once, after update mode");

        for (std::size_t i = 0; i < info.blockCount; ++i)
        {
            const auto entry = request.subspan (10 + 3 * i, 3);
            enabledSize += blocks[i].enabled ? blocks[i].size : 0;
            expect (entry[0] == i + (blocks[i].enabled ? 0x81 : 0x01), "the summary has every block");
            expect ((entry[1] | entry[2] << 8) == blocks[i].crc16, "the summary has each block's CRC-16");
        }

        expect (number (request.subspan (4, 3)) == info.totalSize && number (request.subspan (7, 3)) == enabledSize,
                "the summary has the sizes");
        expectZeros (request.subspan (10 + std::size_t { 3 } * info.blockCount));
    }

    void expectHeader (std::span<const std::uint8_t> request) const
    {
        expect (step == Step::header && request[1] == current + 1, "a header is that of the next enabled block");
        expect (number (request.subspan (2, 3)) == blocks[current].size, "a header has the block's size");
        expectZeros (request.subspan (5));
    }

    void expectPiece (std::span<const std::uint8_t> request) const
    {
        expect (step == Step::data && request[1] == current + 1, "data is that of the block that was announced");

        for (std::size_t i = 0; i < 126; ++i)
        {
            const auto place = std::size_t { piece } * 126 + i;
            const auto byte = place < blocks[current].data.size() ? blocks[current].data[place] : 0;
            expect (request[2 + i] == byte, "the pieces are the block, in order");
        }
    }

    void modeAnswered (unsigned code)
    {
        if (code == 0xF6 && value == 1)
            step = Step::summary;
        else if (stopRequested || (code == 0xF6 && value != 0) || modeRequests == 15)
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

    /** A stop is told to a controller that has been told of a block, unless it takes no report. */
    [[nodiscard]] bool isFarewellDue() const { return farewells == 0 && wasTaken && (last == 0xF1 || last == 0xF3); }

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
    int farewells = 0;
    bool isWaiting = false;
    bool wasTaken = false;
    bool wasSummaryAccepted = false;
    bool isPauseDue = false;
    bool hasFailed = false;
    bool isConfirmed = false;
    bool stopRequested = false;
};

} // namespace wqv
