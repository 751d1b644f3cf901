// SPDX-License-Identifier: GPL-3.0-or-later
// All sentences of wqv-update about outcomes, causes and devices.

#include "Words.h"

#include "DeviceIds.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

namespace wqv
{
namespace
{

using OpenResult = HidService::OpenResult;

std::string code (int number)
{
    return "0x" + hexadecimal (number, 2);
}

/** Such as "ready (0xF9)"; an unknown code alone. */
template <typename Code>
std::string named (Code value)
{
    const auto name = nameOf (value);
    const auto number = code (static_cast<int> (value));
    return name.empty() ? number : std::string (name) + " (" + number + ")";
}

std::string seconds (std::chrono::milliseconds duration)
{
    std::array<char, 32> text {};
    std::snprintf (text.data(), text.size(), "%.3f s", static_cast<double> (duration.count()) / 1000.0);
    return text.data();
}

/** Such as "block data (0xF3), block 1, piece 40". */
std::string requestText (const UpdateFailure& failure)
{
    auto text = named (failure.request);

    if (failure.block != 0)
        text += ", block " + std::to_string (failure.block);

    if (failure.request == RequestCode::blockData)
        text += ", piece " + std::to_string (failure.piece + 1);

    return text;
}

std::string expectation (const UpdateFailure& failure)
{
    auto text = "expected was " + named (failure.expected);

    if (failure.expected == ResponseCode::blockAccepted)
        text += " or " + named (ResponseCode::blockVerified);

    if (failure.expected == ResponseCode::updateMode)
        text += " with the value " + std::to_string (static_cast<int> (ModeStatus::entered));

    return text;
}

bool isControllers (const HidDevice& device)
{
    return device.vendorId == kVendorId && device.productId == HidDeviceType[1];
}

} // namespace

std::string describe (const UpdateFailure& failure)
{
    using enum UpdateFailure::Cause;

    const auto request = requestText (failure);
    const auto after = " after " + seconds (failure.waited);

    switch (failure.cause)
    {
        case none: return "the update could not be started, or was left at its very end";
        case noData: return "the blocks of the package hold no data; nothing was sent";
        case notSent:
            return "the system did not take the request: " + request + "; no answer came" + after + ", "
                   + expectation (failure);
        case noAnswer:
            return "no answer to the request: " + request + "; none came" + after + ", " + expectation (failure);
        case wrongAnswer:
            return "a wrong answer to the request: " + request + "; " + named (failure.received) + " with the value "
                   + std::to_string (failure.value) + " came" + after + ", " + expectation (failure);
        case interrupted:
            return "the controller went away, or came back, before its answer to the request: " + request
                   + "; it did so" + after + ", " + expectation (failure);
        case stopped: return "the update was asked to end at the request: " + request;
    }

    return "unknown cause";
}

std::string_view nameOf (UpdateFailure::Cause cause)
{
    switch (cause)
    {
        case UpdateFailure::Cause::none: return "none";
        case UpdateFailure::Cause::noData: return "noData";
        case UpdateFailure::Cause::notSent: return "notSent";
        case UpdateFailure::Cause::noAnswer: return "noAnswer";
        case UpdateFailure::Cause::wrongAnswer: return "wrongAnswer";
        case UpdateFailure::Cause::interrupted: return "interrupted";
        case UpdateFailure::Cause::stopped: return "stopped";
    }

    return "unknown";
}

std::string_view headlineOf (Result result)
{
    switch (result)
    {
        case Result::complete: return "the update is complete";
        case Result::failed: return "the update FAILED";
        case Result::stopped: return "stopped";
        case Result::declined: return "not updated: nothing was sent";
        case Result::noController: return "no controller";
        case Result::badPackage: return "no update package";
    }

    return "unknown result";
}

std::string_view nameOf (Result result)
{
    switch (result)
    {
        case Result::complete: return "complete";
        case Result::failed: return "failed";
        case Result::stopped: return "stopped";
        case Result::declined: return "declined";
        case Result::noController: return "noController";
        case Result::badPackage: return "badPackage";
    }

    return "unknown";
}

std::string_view nameOf (RequestCode request)
{
    switch (request)
    {
        case RequestCode::packageSummary: return "package summary";
        case RequestCode::blockHeader: return "block header";
        case RequestCode::finish: return "finish";
        case RequestCode::blockData: return "block data";
        case RequestCode::enterUpdateMode: return "enter update mode";
    }

    return {};
}

std::string_view nameOf (ResponseCode response)
{
    switch (response)
    {
        case ResponseCode::none: return {};
        case ResponseCode::updateMode: return "update mode";
        case ResponseCode::busy: return "busy";
        case ResponseCode::summaryAccepted: return "summary accepted";
        case ResponseCode::ready: return "ready";
        case ResponseCode::blockAccepted: return "block accepted";
        case ResponseCode::updateFinished: return "update finished";
        case ResponseCode::blockVerified: return "block verified";
    }

    return {};
}

std::string describe (const DeviceRoster::Entry& entry, const std::optional<HidDevice>& chosen)
{
    const auto& device = entry.device;

    if (chosen && chosen->id == device.id)
        return "the controller";

    if (device.vendorId != kVendorId)
        return "not the controller: its vendor is not " + hexadecimal (kVendorId, 4);

    if (device.productId != HidDeviceType[1])
        return "not the controller: its product is not " + hexadecimal (HidDeviceType[1], 4);

    if (entry.isDone)
        return "a controller that has had its turn: unplug it first";

    if (entry.opened == OpenResult::denied)
        return "a controller, but this user has no access to it";

    if (entry.opened == OpenResult::inUse)
        return "a controller, but another program is using it";

    if (entry.opened == OpenResult::gone)
        return "a controller, but it does not answer the system";

    if (chosen && chosen->location == device.location)
        return "the controller too, but another interface of it fits better";

    return "a controller, but not the first one";
}

std::string_view nameOf (std::optional<OpenResult> opened)
{
    if (! opened)
        return "notTried";

    switch (*opened)
    {
        case OpenResult::ok: return "free";
        case OpenResult::denied: return "denied";
        case OpenResult::inUse: return "inUse";
        case OpenResult::gone: return "gone";
    }

    return "unknown";
}

std::string reasonForNone (const std::vector<DeviceRoster::Entry>& entries)
{
    for (const auto& entry : entries)
        if (isControllers (entry.device) && (entry.isDone || (entry.opened && entry.opened != OpenResult::ok)))
            return "there is " + describe (entry, {});

    return "none is plugged in";
}

std::string hexadecimal (std::int64_t number, int digits)
{
    std::array<char, 24> text {};
    std::snprintf (text.data(), text.size(), "%0*llX", digits, static_cast<unsigned long long> (number)); // NOLINT
    return text.data();
}

} // namespace wqv
