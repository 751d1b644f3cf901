// SPDX-License-Identifier: GPL-3.0-or-later
// Faults, pace, firmware version and the like on the command line.

#include "ControllerOptions.h"

#include "FirmwareVersion.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <string>

namespace wqv
{
namespace
{

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
    app.add_option_function<std::string> (
           "--fault",
           [&options] (const std::string& text) { options.faults = *parseFaultScript (text); },
           "What it does wrong: kind@first[-last][:value],... as in silent@40 or wrong@7:0xF8")
        ->check ([] (const std::string& text)
                 { return parseFaultScript (text) ? "" : "kind@first[-last][:value] with a kind that there is"; });
    app.add_option_function<std::string> (
           "--firmware",
           [&options] (const std::string& text) { options.firmwareVersion = *parseFirmwareVersion (text); },
           "Its firmware version before the update, 0.00 to 9.99; 1.00 if left out")
        ->check ([] (const std::string& text)
                 { return parseFirmwareVersion (text) ? "" : "a version has the form 1.00"; });
    app.add_option ("--pace", options.pace, "A factor on all its delays; 0 answers at once")
        ->check (CLI::Range (0.0, 100.0));
    app.add_option (
        "--received", options.receivedFolder, "At exit, write each block that it received into this folder");
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
    VirtualController controller (options.faults, paceOf (options.pace));
    controller.setVersionNumber (options.firmwareVersion);
    return controller;
}

} // namespace wqv
