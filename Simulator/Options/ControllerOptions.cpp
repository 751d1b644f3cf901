// SPDX-License-Identifier: GPL-3.0-or-later
// Faults, pace, firmware version and the like on the command line.

#include "ControllerOptions.h"

#include "FirmwareVersion.h"
#include "Utf8Path.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <fstream>
#include <string>

namespace wqv
{
namespace
{

/** A slower controller would leave the host without a word for longer than it waits: 10 s after "finish". */
constexpr double slowestPace = 30.0;

/** With the sample package about 15 seconds in all. */
ControllerPace paceOf (double factor)
{
    using namespace std::chrono_literals;
    const auto scaled = [factor] (std::chrono::milliseconds duration)
    { return std::chrono::duration_cast<std::chrono::milliseconds> (duration * factor); };

    return { .restart = scaled (1000ms),
             .erase = scaled (1500ms),
             .write = scaled (28ms),
             .complete = scaled (1500ms),
             .busyPolls = 5 };
}

} // namespace

void addControllerOptions (CLI::App& app, ControllerOptions& options)
{
    app.add_flag ("--absent", options.isAbsent, "The controller is not plugged in at the start");
    auto* const fault =
        app.add_option_function<std::string> (
               "--fault",
               [&options] (const std::string& text) { options.faults = *parseFaultScript (text); },
               "What it does wrong: kind@first[-last][:value],... as in silent@40 or wrong@7:0xF8")
            ->check ([] (const std::string& text)
                     { return parseFaultScript (text) ? "" : "kind@first[-last][:value] with a kind that there is"; });
    auto* const firmware =
        app.add_option_function<std::string> (
               "--firmware",
               [&options] (const std::string& text) { options.firmwareVersion = *parseFirmwareVersion (text); },
               "Its firmware version before the update, 0.00 to 9.99; 1.00 if left out")
            ->check ([] (const std::string& text)
                     { return parseFirmwareVersion (text) ? "" : "a version has the form 1.00"; });
    auto* const pace = app.add_option ("--pace", options.pace, "A factor on all its delays; 0 answers at once")
                           ->check (CLI::Range (0.0, slowestPace));
    auto* const received = app.add_option_function<std::string> (
        "--received",
        [&options] (const std::string& text) { options.receivedFolder = pathFromUtf8 (text); },
        "At exit, write each block that it received into this folder");

    app.add_option_function<std::string> (
           "--replay",
           [&options] (const std::string& text) { options.replayedTrace = pathFromUtf8 (text); },
           "Do again what the controller did in a trace of wqv-update")
        ->check (CLI::ExistingFile)
        ->excludes (fault)
        ->excludes (firmware)
        ->excludes (pace)
        ->excludes (received);
}

std::optional<int> parseCommandLine (CLI::App& app, int argc, const char* const* argv)
{
    try
    {
        app.parse (argc, argv);
        return {};
    }
    catch (const CLI::ParseError& error)
    {
        // A request for help or the version comes as an error too, with the code 0.
        constexpr int usageError = 2;
        return app.exit (error) == 0 ? 0 : usageError;
    }
}

VirtualController makeController (const ControllerOptions& options)
{
    return VirtualController (options.faults, paceOf (options.pace), options.firmwareVersion);
}

std::unique_ptr<TracedController> makeRecordedController (const ControllerOptions& options, std::string& problem)
{
    if (options.replayedTrace.empty())
        return nullptr;

    std::ifstream file (options.replayedTrace);
    std::size_t badLine = 0;
    auto controller = std::make_unique<TracedController> (readTrace (file, badLine));

    if (badLine == 1)
        problem = options.replayedTrace.string() + ": its first line is not \"" + std::string (traceFirstLine) + '"';
    else if (badLine != 0)
        problem = options.replayedTrace.string() + ": line " + std::to_string (badLine) + " is none of a trace";

    return controller;
}

} // namespace wqv
