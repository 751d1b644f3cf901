// SPDX-License-Identifier: GPL-3.0-or-later
// wqv-faults: updates controllers with the given faults, one after another, and says which promises were broken.

#include "FaultedUpdate.h"
#include "Judgement.h"

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>

namespace
{

using namespace wqv;

constexpr const auto* usage =
    "usage: wqv-faults [--times N] [--steady] SCRIPT...\n"
    "Updates virtual controllers that have faults, such as silent@2 or busy@4:3,unplug@5, N times with each script; empty for\n"
    "none. With --steady the process may not grow, after a hundred updates or half of them. A line of JSON for each script;\n"
    "status 1 if a promise was broken, and then the traces on standard error.\n";

constexpr std::array causes { "none", "noData", "notSent", "noAnswer", "wrongAnswer", "interrupted", "stopped" };

/** Updates before the process has all the memory that it needs. */
constexpr int warmUp = 100;

using Counts = std::map<std::string, std::int64_t>;

/** What this process holds. By name: "heap", bytes that are allocated, which only the system's own allocator knows; "resident", bytes in memory, of whatever
    kind; "descriptors"; "threads". */
Counts processSize()
{
    const auto entriesOf = [] (const char* folder)
    { return std::distance (std::filesystem::directory_iterator (folder), std::filesystem::directory_iterator()); };

    std::int64_t total = 0;
    std::int64_t resident = 0;
    std::ifstream ("/proc/self/statm") >> total >> resident;
    const auto memory = mallinfo2();

    return { { "heap", static_cast<std::int64_t> (memory.uordblks + memory.hblkhd) },
             { "resident", resident * sysconf (_SC_PAGESIZE) },
             { "descriptors", entriesOf ("/proc/self/fd") },
             { "threads", entriesOf ("/proc/self/task") } };
}

/** "leftOut" is complete without a block that the controller did not want. */
std::string outcomeOf (const FaultedUpdate& update)
{
    if (update.updater->status() == UPDATER_STATUS_COMPLETE)
        return update.controller.isUpdated() ? "complete" : "leftOut";

    const auto& failure = update.updater->failure();
    std::array<char, 8> request {};
    std::snprintf (request.data(), request.size(), " at %02X", static_cast<unsigned> (failure.request));
    return causes.at (static_cast<std::size_t> (failure.cause)) + std::string (request.data());
}

/** The heap may differ by what is freed later; the rest of the memory comes in pages. */
bool isSteady (const Counts& growth)
{
    return growth.at ("heap") < 16'384 && growth.at ("resident") < 524'288 && growth.at ("descriptors") <= 0
           && growth.at ("threads") <= 0;
}

/** An object of JSON. */
std::string json (const Counts& counts)
{
    std::string text;

    for (const auto& [name, count] : counts)
        text += (text.empty() ? "\"" : ",\"") + name + "\":" + std::to_string (count);

    return '{' + text + '}';
}

/** Prints a line of the table.
    @returns whether all promises were kept */
bool runScript (const std::string& script, int times, bool mustBeSteady)
{
    std::chrono::milliseconds longest {};
    std::string byProtocol = "null";
    Counts outcomes;
    Counts broken;
    Counts growth;

    for (int i = 0; i < times; ++i)
    {
        if (i == std::min (warmUp, times / 2))
            growth = processSize();

        const FaultedUpdate update (script);
        const Judgement judgement (update, parseFaultScript (script).value());
        longest = std::max (longest, update.duration);
        ++outcomes[outcomeOf (update)];

        if (judgement.byProtocol)
            byProtocol = std::to_string (judgement.byProtocol->count());

        for (const auto& promise : judgement.broken)
        {
            std::cerr << "# " << script << ": " << promise << '\n';
            ++broken[promise];
        }

        if (! judgement.broken.empty())
            std::cerr << update.trace.str();
    }

    for (const auto& [name, count] : processSize())
        growth[name] = count - growth[name];

    if (mustBeSteady && ! isSteady (growth))
        ++broken["the process does not grow"];

    std::cout << R"({"script":")" << script << R"(","updates":)" << times << R"(,"took_ms":)" << longest.count()
              << R"(,"by_protocol_ms":)" << byProtocol << R"(,"outcomes":)" << json (outcomes) << R"(,"growth":)"
              << json (growth) << R"(,"broken":)" << json (broken) << "}\n"
              << std::flush;
    return broken.empty();
}

} // namespace

int main (int argc, char** argv)
{
    std::vector<std::string> scripts (argv + 1, argv + argc);
    const auto mustBeSteady = std::erase (scripts, "--steady") > 0;
    int times = 1;

    if (scripts.size() > 1 && scripts[0] == "--times")
    {
        times = std::atoi (scripts[1].c_str());
        scripts.erase (scripts.begin(), scripts.begin() + 2);
    }

    const auto isScript = [] (const std::string& text) { return parseFaultScript (text).has_value(); };

    if (times <= 0 || scripts.empty() || ! std::ranges::all_of (scripts, isScript))
    {
        std::cerr << usage;
        return 2;
    }

    const MessageLoop keepsJuce;
    auto isGood = true;

    for (const auto& script : scripts)
        isGood = runScript (script, times, mustBeSteady) && isGood;

    return isGood ? 0 : 1;
}
