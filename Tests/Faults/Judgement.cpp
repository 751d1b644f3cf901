// SPDX-License-Identifier: GPL-3.0-or-later
// The promises of docs/architecture.md, checked on the trace of an update.

#include "Judgement.h"

#include "ExpectedEnd.h"
#include "Responses.h"
#include "UpdaterFixture.h"

#include <algorithm>
#include <set>
#include <utility>

namespace wqv
{
namespace
{

using namespace std::chrono_literals;
using Cause = UpdateFailure::Cause;
using LineKind = TraceLine::Kind;

/** A message thread that stands still has a second; a loaded machine takes what it takes. Less than any limit. */
constexpr std::chrono::milliseconds slack = 5s;

class Judge
{
public:
    explicit Judge (const FaultedUpdate& updateToJudge) : update (updateToJudge) {}

    Judgement verdict()
    {
        followTrace();
        judgeEnd();
        judgeExpectation();

        if (update.status == UPDATER_STATUS_COMPLETE)
            judgeComplete();
        else
            judgeError();

        return judgement;
    }

private:
    void expect (bool isSo, const std::string& promise)
    {
        if (! isSo)
            judgement.broken.push_back (promise);
    }

    /** Line by line, from the first request to the outcome. */
    void followTrace()
    {
        for (const auto& line : update.lines)
        {
            if (line.time > update.end)
            {
                expect (line.kind != LineKind::sent, "nothing is sent after the outcome");
                continue;
            }

            if (line.kind == LineKind::sent || hasBegun)
                take (line);
        }

        endWait (update.end, true);
    }

    void take (const TraceLine& line)
    {
        const auto waited = endWait (line.time, line.kind == LineKind::sent);
        hasBegun = true;
        since = line.time;
        const auto hadToWait = std::exchange (mustWait, false);

        switch (line.kind)
        {
            case LineKind::sent:
                request = static_cast<RequestCode> (line.bytes.front());
                block = line.bytes[1];
                isWritten = isWritten || request == RequestCode::packageSummary;
                isAnswered = false;
                limit = limitOf (request);
                mustWait = ! std::exchange (isInterruptionNew, false); // else it may be what the host reads next
                break;

            case LineKind::notTaken:
                wasNotTaken = true;
                mustWait = hadToWait;
                break;

            case LineKind::received: takeAnswer (line, waited); break;

            case LineKind::attached:
            case LineKind::removed:
            case LineKind::opened:
                wasInterrupted = isInterruptionNew = true;
                wasInterruptedInWriting = wasInterruptedInWriting || (isWritten && ! isFinished);

                // What it sends while there is no controller stands in no trace.
                limit = request == RequestCode::enterUpdateMode ? limitOf (request) * protocolLimits::modeRequests
                                                                : limitOf (RequestCode::finish);
                break;
        }
    }

    void takeAnswer (const TraceLine& line, std::chrono::microseconds waited)
    {
        const auto code = static_cast<ResponseCode> (line.bytes.front());
        answers.insert (code);
        isFinished = isFinished || (request == RequestCode::finish && code == ResponseCode::updateFinished);

        if (request == RequestCode::blockHeader && ! isAnswered && code != ResponseCode::none
            && code != ResponseCode::ready)
            leftOut.insert (block);

        isAnswered = true;

        if (code == ResponseCode::busy && request == RequestCode::blockData)
        {
            limit = protocolLimits::nextProgress;
            mustWait = true;
        }
        else if (code == ResponseCode::busy && request == RequestCode::finish)
        {
            limit = protocolLimits::pollPause;
            mustWait = true;
        }
        else if (code == ResponseCode::updateMode && request != RequestCode::enterUpdateMode)
            // Passed over. Where the order is broken, the host perhaps sees it in the place of the answer before it.
            limit = breaksTheOrder (update.faults)
                        ? limitOf (request)
                        : limit - std::chrono::duration_cast<std::chrono::milliseconds> (waited);
        else
            limit = isFinished ? protocolLimits::pollPause : 0ms;
    }

    /** @param byHost  the host goes on without an answer */
    std::chrono::microseconds endWait (std::chrono::microseconds now, bool byHost)
    {
        if (! hasBegun)
            return {};

        const auto waited = now - since;
        expect (waited <= limit + slack,
                "every wait ends: " + std::to_string (waited / 1ms) + " ms of " + std::to_string (limit / 1ms));
        expect (! byHost || ! mustWait || waited >= limit || breaksTheOrder (update.faults),
                "no wait ends early: " + std::to_string (waited / 1ms) + " ms of " + std::to_string (limit / 1ms));

        if (waited > judgement.longestWait)
        {
            judgement.longestWait = waited;
            judgement.limit = limit;
        }

        return waited;
    }

    void judgeEnd()
    {
        expect (update.shown == std::vector { UPDATER_STATUS_READY, UPDATER_STATUS_UPDATING, update.status },
                "there is one outcome");
        expect (! update.isAwake, "the machine is kept awake only as long as an update runs");

        if (! breaksTheOrder (update.faults))
            for (const auto& error : update.hostErrors)
                expect (false, "only legal orders: " + error);
    }

    void judgeExpectation()
    {
        const auto expected = expectedEnd (update.faults);
        const auto isComplete = update.status == UPDATER_STATUS_COMPLETE;

        expect (isComplete ? expected.mayBeComplete : expected.mayBeError, "it ends as the protocol says");

        if (! expected.mayBeComplete && ! isComplete)
            expect (update.failure.cause == expected.cause
                        && static_cast<int> (update.failure.request) == smallUpdate[expected.request - 1],
                    "the cause is what went wrong first");
    }

    void judgeComplete()
    {
        expect (isFinished, "complete only after 0xFC");
        expect (! wasInterruptedInWriting, "never complete after the controller went away");

        const auto package = smallPackage();
        auto isWhole = true;

        std::uint8_t number = 0;

        for (const auto& sent : package.blocks)
        {
            const auto found = update.receivedBlocks.find (++number);

            if (! sent.enabled)
                expect (found == update.receivedBlocks.end(), "no block that is not enabled");
            else if (found == update.receivedBlocks.end() || found->second != sent.data)
            {
                isWhole = false;

                // Where the order is broken, a header may get an answer to the one before it.
                const auto isLeftOut = leftOut.contains (number)
                                       || (breaksTheOrder (update.faults) && answers.contains (ResponseCode::busy));
                expect (isLeftOut, "complete only if block " + std::to_string (number) + " is whole");
            }
        }

        const auto newVersion = static_cast<std::int32_t> (isWhole ? package.version : 100);
        expect (update.isUpdated == isWhole && update.deviceVersion == newVersion,
                "the controller has its new version exactly if all blocks are whole");
    }

    /** No error without a reason. */
    void judgeError()
    {
        const auto& failure = update.failure;
        const auto limitOfFailure = failure.request == RequestCode::blockData && answers.contains (ResponseCode::busy)
                                        ? protocolLimits::nextProgress
                                        : limitOf (failure.request);

        switch (failure.cause)
        {
            case Cause::interrupted: expect (wasInterrupted, "an interruption was one"); break;
            case Cause::notSent: expect (wasNotTaken || wasInterrupted, "what was not sent was not taken"); break;
            case Cause::noAnswer: expect (failure.waited >= limitOfFailure, "no answer within the limit"); break;
            case Cause::wrongAnswer: expect (answers.contains (failure.received), "a wrong answer was given"); break;
            case Cause::none:
            case Cause::noData:
            case Cause::stopped: expect (false, "an error has its cause"); break;
        }
    }

    const FaultedUpdate& update;
    Judgement judgement;

    // Of the trace, up to the line that was read last.
    RequestCode request = RequestCode::enterUpdateMode;
    std::uint8_t block = 0;
    std::chrono::microseconds since {};
    std::chrono::milliseconds limit {}; ///< of the wait that begins there
    bool mustWait = false;              ///< and the host may not go on before that
    bool hasBegun = false;
    bool isWritten = false; ///< a summary was sent
    bool isAnswered = false;
    bool isFinished = false;
    bool wasNotTaken = false;
    bool isInterruptionNew = false; ///< nothing was sent since
    bool wasInterrupted = false;
    bool wasInterruptedInWriting = false;
    std::set<ResponseCode> answers;
    std::set<std::uint8_t> leftOut; ///< blocks whose header was answered with another code than "ready"
};

} // namespace

Judgement judge (const FaultedUpdate& update)
{
    return Judge (update).verdict();
}

} // namespace wqv
