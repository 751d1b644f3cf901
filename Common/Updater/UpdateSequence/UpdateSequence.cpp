// SPDX-License-Identifier: GPL-3.0-or-later
// The conversation of one update, step by step in the order of docs/protocol.md.

#include "UpdateSequence.h"

#include "TimeLimits.h"

namespace wqv
{

UpdateSequence::UpdateSequence (Link& linkToUse, const upd_info_t& info, const FirmwareBlocks& blocks)
    : link (linkToUse), upd_info (info), fw_info (blocks)
{
}

bool UpdateSequence::run()
{
    link.reportProgress (0.0);

    if (upd_info.totalSize == 0)
    {
        firstFailure.cause = UpdateFailure::Cause::noData;
        return false;
    }

    if (sendUpdateMode() != 0 || ! sendSummary())
        return false;

    // After a failed block, too, the controller is told that the update is over; its answer then changes nothing.
    const auto allBlocksSent = sendBlocks();
    const auto finished = pollUntilFinished();

    sayFarewell();
    return allBlocksSent && finished;
}

int UpdateSequence::sendUpdateMode()
{
    for (int tries = 0; tries < timeLimits::enterUpdateModeRequests; ++tries)
    {
        // A time-out does not end the try: an answer that came without a signal still counts.
        exchange (enterUpdateModeRequest(), timeLimits::enterUpdateMode);

        if (answer.code != ResponseCode::updateMode)
            continue;

        if (answer.value == static_cast<std::uint8_t> (ModeStatus::entered))
            return 0;

        if (answer.value != static_cast<std::uint8_t> (ModeStatus::notYet))
        {
            answer.signalled = true; // a refusal is an answer, even if it came before the wait
            break;
        }
    }

    fail ({ .request = RequestCode::enterUpdateMode, .expected = ResponseCode::updateMode });
    return -1;
}

bool UpdateSequence::sendSummary()
{
    const auto answered = exchange (packageSummaryRequest (upd_info, fw_info), timeLimits::summary);

    return (answered && answer.code == ResponseCode::summaryAccepted)
           || fail ({ .request = RequestCode::packageSummary, .expected = ResponseCode::summaryAccepted });
}

bool UpdateSequence::sendBlocks()
{
    for (std::uint8_t i = 0; i < upd_info.blockCount; ++i)
        if (fw_info[i].enabled && ! sendBlock (static_cast<std::uint8_t> (i + 1), fw_info[i]))
            return false;

    return true;
}

bool UpdateSequence::sendBlock (std::uint8_t number, const fw_info_t& block)
{
    // A controller that went away meanwhile has not answered, so its block has not been left out: the update failed.
    if (! exchange (blockHeaderRequest (number, block.size), timeLimits::blockHeader)
        || answer.code == ResponseCode::none)
        return fail ({ .request = RequestCode::blockHeader, .block = number, .expected = ResponseCode::ready });

    if (answer.code != ResponseCode::ready)
        return true;

    for (std::uint32_t piece = 0; piece < pieceCount (block.size); ++piece)
        if (! sendPiece (number, block, piece))
            return false;

    return true;
}

bool UpdateSequence::sendPiece (std::uint8_t number, const fw_info_t& block, std::uint32_t piece)
{
    const auto isLast = piece + 1 == pieceCount (block.size);
    const auto expected = isLast ? ResponseCode::blockAccepted : ResponseCode::ready;
    const auto answered =
        exchange (blockDataRequest (number, block.data, piece), timeLimits::blockData) && recieveProgress() == 0;
    const auto accepted = answer.code == expected || (isLast && answer.code == ResponseCode::blockVerified);

    if (! answered || ! accepted)
        return fail ({ .request = RequestCode::blockData, .block = number, .piece = piece, .expected = expected });

    percent = answer.value;
    showPercentage();
    return true;
}

int UpdateSequence::recieveProgress()
{
    while (answer.code == ResponseCode::busy)
    {
        percent = answer.value;
        showPercentage();

        if (! awaitAnswer (timeLimits::nextProgress))
            return -1;
    }

    return 0;
}

bool UpdateSequence::pollUntilFinished()
{
    while (exchange (finishRequest(), timeLimits::finish))
    {
        if (answer.code != ResponseCode::busy && answer.code != ResponseCode::updateFinished)
            break;

        showPercentage();
        link.pause (timeLimits::pollPause);

        if (answer.code == ResponseCode::updateFinished)
            return true;
    }

    return fail ({ .request = RequestCode::finish, .expected = ResponseCode::updateFinished });
}

/** Tells the controller that the update is over if the last request was about a block: only a stopped update ends there. */
void UpdateSequence::sayFarewell()
{
    const auto inBlock = lastRequest == RequestCode::blockHeader || lastRequest == RequestCode::blockData;

    // A controller that did not take the last report would only make the host wait for this one too.
    if (inBlock && lastRequestTaken)
        link.send (finishRequest());
}

bool UpdateSequence::isAutoUpdateModeSupported()
{
    for (int signals = 0; signals < 10; ++signals)
        if (! awaitAnswer (timeLimits::autoUpdateMode))
            return false;

    return true;
}

/** Sends a request and waits. @returns whether anything came */
bool UpdateSequence::exchange (const Request& request, std::chrono::milliseconds limit)
{
    if (link.stopRequested())
    {
        answer = {};
        waited = {};
        return false;
    }

    lastRequest = static_cast<RequestCode> (request.front());
    lastRequestTaken = link.send (request);

    if (lastRequest == RequestCode::enterUpdateMode)
        ++modeAnswersOwed;

    return awaitAnswer (limit);
}

bool UpdateSequence::awaitAnswer (std::chrono::milliseconds limit)
{
    answer.remaining = limit;

    do
    {
        answer = link.wait (answer.remaining);
    }
    while (isLateModeAnswer());

    waited = limit - answer.remaining;

    if (answer.interrupted)
        interruptedAfter = waited;
    else if (answer.signalled || lastRequestTaken)
        interruptedAfter.reset();

    return answer.signalled;
}

/** Counts the answers to "enter update mode"; whether this one comes when another answer is waited for. */
bool UpdateSequence::isLateModeAnswer()
{
    if (! answer.signalled || answer.code != ResponseCode::updateMode || modeAnswersOwed == 0)
        return false;

    --modeAnswersOwed;
    return lastRequest != RequestCode::enterUpdateMode;
}

/** Keeps what went wrong with a request, by the answer that came to it, unless something went wrong before.
    @returns false */
bool UpdateSequence::fail (UpdateFailure what)
{
    using enum UpdateFailure::Cause;

    if (firstFailure.cause != none)
        return false;

    if (answer.signalled && ! answer.interrupted)
    {
        what.cause = wrongAnswer;
        what.received = answer.code;
        what.value = answer.value;
    }
    else if (link.stopRequested())
        what.cause = stopped;
    else if (interruptedAfter)
        what.cause = interrupted;
    else
        what.cause = lastRequestTaken ? noAnswer : notSent;

    what.waited = what.cause == interrupted ? *interruptedAfter : waited;
    firstFailure = what;
    return false;
}

void UpdateSequence::showPercentage()
{
    link.reportProgress (answer.value / 100.0);
}

std::int32_t beki (std::int32_t base, std::int32_t exponent)
{
    std::uint32_t power = 1;

    for (; exponent > 0; --exponent)
        power *= static_cast<std::uint32_t> (base);

    return static_cast<std::int32_t> (power);
}

} // namespace wqv
