// SPDX-License-Identifier: GPL-3.0-or-later
// The steps of an update as JSON, one object a line.

#include "Output.h"
#include "Reporter.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace wqv
{
namespace
{

using Json = nlohmann::ordered_json;

Json toJson (const UpdateFailure& failure)
{
    const auto isAnswered = failure.cause == UpdateFailure::Cause::wrongAnswer;
    Json expected = Json::array ({ static_cast<int> (failure.expected) });

    if (failure.expected == ResponseCode::blockAccepted)
        expected.push_back (static_cast<int> (ResponseCode::blockVerified));

    return { { "kind", nameOf (failure.cause) },
             { "request", static_cast<int> (failure.request) },
             { "requestName", nameOf (failure.request) },
             { "block", failure.block == 0 ? Json (nullptr) : Json (failure.block) },
             { "piece", failure.request == RequestCode::blockData ? Json (failure.piece + 1) : Json (nullptr) },
             { "expected", expected },
             { "received", isAnswered ? Json (static_cast<int> (failure.received)) : Json (nullptr) },
             { "value", isAnswered ? Json (failure.value) : Json (nullptr) },
             { "waitedMilliseconds", failure.waited.count() },
             { "text", describe (failure) } };
}

class JsonReporter final : public Reporter
{
public:
    explicit JsonReporter (Output& outputToUse) : output (outputToUse) {}

    void devices (const std::vector<DeviceRoster::Entry>& entries, const std::optional<HidDevice>& chosen) override
    {
        for (const auto& entry : entries)
        {
            const auto& device = entry.device;
            write ({ { "event", "device" },
                     { "vendor", device.vendorId },
                     { "product", device.productId },
                     { "version", device.versionNumber },
                     { "location", device.location },
                     { "interface", device.interfaceNumber },
                     { "inputReportLength", device.inputReportLength },
                     { "outputReportLength", device.outputReportLength },
                     { "isController", chosen && chosen->id == device.id },
                     { "access", nameOf (entry.opened) },
                     { "text", describe (entry, chosen) } });
        }
    }

    void waiting (const std::string& reason) override { write ({ { "event", "waiting" }, { "reason", reason } }); }

    void versions (std::int32_t ofController, std::int32_t ofPackage, int number) override
    {
        write (
            numbered ({ { "event", "versions" }, { "controller", ofController }, { "package", ofPackage } }, number));
        shown = -1;
    }

    void question() override { output.printError ("Update? [y/N] "); }
    void answered() override {}

    void progress (double fraction) override
    {
        const auto percent = static_cast<int> (std::clamp (fraction, 0.0, 1.0) * 100.0);

        if (percent != std::exchange (shown, percent))
            write ({ { "event", "progress" }, { "percent", percent } });
    }

    void outcome (const Outcome& outcome) override
    {
        write (numbered ({ { "event", "outcome" },
                           { "result", nameOf (outcome.result) },
                           { "text", headlineOf (outcome.result) },
                           { "reason", outcome.reason.empty() ? Json (nullptr) : Json (outcome.reason) },
                           { "cause", outcome.failure ? toJson (*outcome.failure) : Json (nullptr) } },
                         outcome.number));
    }

    void summary (int complete, int notComplete) override
    {
        write ({ { "event", "summary" }, { "complete", complete }, { "notComplete", notComplete } });
    }

private:
    static Json numbered (Json json, int number)
    {
        if (number != 0)
            json["number"] = number;

        return json;
    }

    /** Bytes of file names that are no UTF-8 are replaced. */
    void write (const Json& json) { output.print (json.dump (-1, ' ', false, Json::error_handler_t::replace) + "\n"); }

    Output& output;
    int shown = -1; ///< the percentage that was told last
};

} // namespace

std::unique_ptr<Reporter> makeJsonReporter (Output& output)
{
    return std::make_unique<JsonReporter> (output);
}

} // namespace wqv
