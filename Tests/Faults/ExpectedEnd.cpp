// SPDX-License-Identifier: GPL-3.0-or-later
// The host's side of docs/protocol.md, step by step, as rules for one fault at one request of the small package.

#include "ExpectedEnd.h"

#include "Responses.h"
#include "UpdaterFixture.h"

#include <algorithm>

namespace wqv
{
namespace
{

using Cause = UpdateFailure::Cause;
using Kind = Fault::Kind;

constexpr ExpectedEnd complete {};
constexpr ExpectedEnd either { .mayBeError = true };

ExpectedEnd errorAt (std::size_t request, Cause cause)
{
    return { .mayBeComplete = false, .mayBeError = true, .cause = cause, .request = request };
}

RequestCode codeOf (std::size_t request)
{
    return static_cast<RequestCode> (smallUpdate[request - 1]);
}

/** Step 1: whatever is no refusal is a failed try, and there are others. */
ExpectedEnd endAtFirst (const Fault& fault)
{
    const auto isEveryTry = fault.last >= static_cast<std::size_t> (protocolLimits::modeRequests);

    switch (fault.kind)
    {
        case Kind::refuse: return errorAt (1, Cause::wrongAnswer);
        case Kind::unplug: return errorAt (1, Cause::notSent);
        case Kind::leave: return errorAt (2, Cause::interrupted);
        case Kind::silent: return isEveryTry ? errorAt (1, Cause::noAnswer) : complete;
        case Kind::notYet:
        case Kind::wrong: return isEveryTry ? errorAt (1, Cause::wrongAnswer) : complete;
        default: return complete;
    }
}

/** Steps 2 to 5: an answer with another code. */
ExpectedEnd endByWrongAnswer (const Fault& fault)
{
    using enum ResponseCode;
    const auto code = static_cast<ResponseCode> (fault.value);
    const auto wrong = errorAt (fault.first, Cause::wrongAnswer);

    switch (codeOf (fault.first))
    {
        case RequestCode::packageSummary: return code == summaryAccepted ? complete : wrong;
        case RequestCode::blockHeader: return code != none ? complete : wrong; // but perhaps without that block
        case RequestCode::finish: return code == updateFinished || code == busy ? complete : wrong;
        case RequestCode::enterUpdateMode: break;
        case RequestCode::blockData:
            if (code == busy)
                return errorAt (fault.first, Cause::noAnswer);

            // A block ends where another code follows.
            return (codeOf (fault.first + 1) != RequestCode::blockData ? code == blockAccepted || code == blockVerified
                                                                       : code == ready)
                       ? complete
                       : wrong;
    }

    return either;
}

ExpectedEnd endByOne (const Fault& fault, const FaultScript& all)
{
    const auto request = fault.first;
    const auto isLast = request == smallUpdate.size();

    if (request > smallUpdate.size())
        return complete;

    if (request == 1)
        return endAtFirst (fault);

    const auto isData = codeOf (request) == RequestCode::blockData;
    const auto isBusy = std::ranges::any_of (
        all, [&] (const Fault& other) { return other.kind == Kind::busy && other.concerns (request); });
    const auto limit = isBusy && isData ? protocolLimits::nextProgress : limitOf (codeOf (request));

    switch (fault.kind)
    {
        case Kind::silent: return errorAt (request, Cause::noAnswer);
        case Kind::late: return limit.count() > fault.value ? complete : errorAt (request, Cause::noAnswer);
        case Kind::busy:
        case Kind::burst: return isData || isLast ? complete : either;
        case Kind::wrong: return endByWrongAnswer (fault);
        case Kind::unplug:
        case Kind::replug: return errorAt (request, Cause::interrupted);
        case Kind::leave: return isLast ? complete : errorAt (request + 1, Cause::interrupted);
        case Kind::hold: return errorAt (request, Cause::notSent);
        case Kind::brief:  // its code is there
        case Kind::refuse: // at the first request only
        case Kind::notYet: return complete;
    }

    return either;
}

} // namespace

std::chrono::milliseconds limitOf (RequestCode request)
{
    using namespace std::chrono_literals;
    return request == RequestCode::blockData ? 180s : 10s;
}

bool breaksTheOrder (const FaultScript& faults)
{
    return std::ranges::any_of (
        faults,
        [] (const Fault& fault)
        {
            const auto isBusy = fault.kind == Kind::busy || fault.kind == Kind::burst;
            const auto saysBusy =
                fault.kind == Kind::wrong && static_cast<ResponseCode> (fault.value) == ResponseCode::busy;
            const auto code = codeOf (std::min (fault.first, smallUpdate.size()));
            return (isBusy && code != RequestCode::blockData) || (saysBusy && code == RequestCode::finish);
        });
}

ExpectedEnd expectedEnd (const FaultScript& faults)
{
    for (const auto& fault : faults)
        if (const auto end = endByOne (fault, faults); end.mayBeError)
            return end;

    return complete;
}

} // namespace wqv
