// SPDX-License-Identifier: GPL-3.0-or-later
// The command-line options that all programs with a virtual controller have.

#pragma once

#include "TracedController.h"
#include "VirtualController.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace CLI
{
class App;
}

namespace wqv
{

struct ControllerOptions
{
    bool isAbsent = false;                 ///< it is not plugged in at the start
    FaultScript faults;                    ///< what it does wrong
    double pace = 1.0;                     ///< a factor on all its delays; 0 for none
    std::int32_t firmwareVersion = 0x0100; ///< in BCD
    std::filesystem::path receivedFolder;  ///< where to write what it received; empty for nowhere
    std::filesystem::path replayedTrace;   ///< what it does again, instead of all that; empty for nothing
};

/** Adds them to @p app, which sets @p options when it parses. Both must outlive the parsing. */
void addControllerOptions (CLI::App& app, ControllerOptions& options);

/** Reads the command line. Help, version and errors are printed.
    @returns the exit status, when there is nothing more to do: 2 for a wrong command line */
[[nodiscard]] std::optional<int> parseCommandLine (CLI::App& app, int argc, const char* const* argv);

/** The controller that the options describe. */
[[nodiscard]] VirtualController makeController (const ControllerOptions& options);

/** The controller that is to do again what a trace says, in the place of the other one; null if the options name no trace.
    @param problem  what is wrong with the trace, for people; else empty */
[[nodiscard]] std::unique_ptr<TracedController> makeRecordedController (const ControllerOptions& options,
                                                                        std::string& problem);

} // namespace wqv
