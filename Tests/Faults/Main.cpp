// SPDX-License-Identifier: GPL-3.0-or-later
// wqv-faults: updates controllers with the given faults, one after another, and says which promises were broken.

#include "FaultedUpdate.h"
#include "Judgement.h"
#include "MessageLoop.h"
#include "ProcessSize.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>

namespace
{

using namespace wqv;

constexpr std::array causes { "none", "noData", "notSent", "noAnswer", "wrongAnswer", "interrupted", "stopped" };

/** Updates before the process has all the memory that it needs. */
constexpr int warmUp = 100;

struct Options
{
    std::vector<std::string> scripts;
    int times = 1;
    bool isSteady = false;
};

/** "leftOut" is complete without a block that the controller did not want. */
std::string outcomeOf (const FaultedUpdate& update)
{
    if (update.status == UPDATER_STATUS_COMPLETE)
        return update.isUpdated ? "complete" : "leftOut";

    std::array<char, 8> request {};
    std::snprintf (request.data(), request.size(), " at %02X", static_cast<unsigned> (update.failure.request));
    return causes.at (static_cast<std::size_t> (update.failure.cause)) + std::string (request.data());
}

nlohmann::json growthSince (const ProcessSize& before)
{
    const auto now = processSize();
    return { { "heap", now.heap - before.heap },
             { "resident", now.resident - before.resident },
             { "descriptors", now.descriptors - before.descriptors },
             { "threads", now.threads - before.threads } };
}

/** The heap may differ by what is freed later; the rest of the memory comes in pages. */
bool isSteady (const nlohmann::json& growth)
{
    return growth["heap"] < 16 * 1024 && growth["resident"] < 512 * 1024 && growth["descriptors"] <= 0
           && growth["threads"] <= 0;
}

/** @returns a line of the table */
nlohmann::json runScript (const std::string& script, const Options& options)
{
    nlohmann::json line { { "script", script }, { "updates", options.times }, { "broken", nlohmann::json::array() } };
    auto& outcomes = line["outcomes"] = nlohmann::json::object();
    std::chrono::milliseconds longest {};
    ProcessSize size;

    for (int i = 0; i < options.times; ++i)
    {
        if (i == std::min (warmUp, options.times / 2))
            size = processSize();

        const auto update = runUpdate (script);
        const auto judgement = judge (update);
        auto& count = outcomes[outcomeOf (update)];
        count = count.is_null() ? 1 : count.get<int>() + 1;

        longest = std::max (longest, update.duration);
        line["took_ms"] = longest.count();

        if (judgement.byProtocol)
            line["by_protocol_ms"] = judgement.byProtocol->count();

        for (const auto& promise : judgement.broken)
            line["broken"].push_back (promise);

        if (! judgement.broken.empty())
            std::cerr << "# " << script << ": " << nlohmann::json (judgement.broken).dump() << '\n' << update.trace;
    }

    line["growth"] = growthSince (size);

    if (options.isSteady && ! isSteady (line["growth"]))
        line["broken"].push_back ("the process does not grow");

    return line;
}

} // namespace

// NOLINTNEXTLINE (bugprone-exception-escape): what is no JSON of this program's may end it
int main (int argc, char** argv)
{
    CLI::App app {
        "Updates virtual controllers that have faults. A line of JSON for each script; status 1 if a promise "
        "was broken, and then the traces on standard error."
    };
    Options options;
    app.add_option ("scripts", options.scripts, "Faults, such as silent@2 or busy@4:3,unplug@5; empty for none")
        ->required()
        ->check ([] (const std::string& text)
                 { return parseFaultScript (text) ? std::string() : "not a fault script: " + text; });
    app.add_option ("--times", options.times, "How many updates with each script")->check (CLI::PositiveNumber);
    app.add_flag ("--steady", options.isSteady, "Nor may the process grow, after a hundred updates or half of them");
    CLI11_PARSE (app, argc, argv);

    const MessageLoop keepsJuce;
    auto isGood = true;

    for (const auto& script : options.scripts)
    {
        const auto line = runScript (script, options);
        isGood = isGood && line["broken"].empty();
        std::cout << line.dump() << std::endl;
    }

    return isGood ? 0 : 1;
}
