// SPDX-License-Identifier: GPL-3.0-or-later
// The demo's command line.

#include "DemoOptions.h"

#include <CLI/CLI.hpp>

#include <string>

namespace wqv
{

std::optional<DemoOptions> readDemoOptions (int argc, const char* const* argv, int& exitStatus)
{
    DemoOptions options;
    std::string script;
    CLI::App app ("The firmware updater with a virtual controller: nothing is written to any device.");

    app.set_version_flag ("--version", WQV_VERSION);
    app.add_flag ("--absent", options.controllerIsAbsent, "The controller is not plugged in");
    auto* const fault =
        app.add_option (
               "--fault", script, "What it does wrong: kind@first[-last][:value],... as in silent@40 or wrong@7:0xF8")
            ->check ([] (const std::string& text)
                     { return parseFaultScript (text) ? "" : "kind@first[-last][:value] with a kind that there is"; });
    auto* const pace = app.add_option ("--pace", options.pace, "A factor on all its delays; 0 answers at once")
                           ->check (CLI::Range (0.0, 100.0));
    auto* const received = app.add_option (
        "--received", options.receivedDirectory, "At exit, write each block that it received into this directory");

    auto* const replay =
        app.add_option ("--replay", options.replayedTrace, "Do again what the controller did in a trace of wqv-update")
            ->check (CLI::ExistingFile);

    for (auto* const other : { fault, pace, received })
        replay->excludes (other);

    try
    {
        app.parse (argc, argv);
    }
    catch (const CLI::ParseError& error)
    {
        constexpr int usageError = 2;
        exitStatus = app.exit (error) == 0 ? 0 : usageError;
        return {};
    }

    options.faults = *parseFaultScript (script);
    return options;
}

} // namespace wqv
