// SPDX-License-Identifier: GPL-3.0-or-later
// What the demo can be told on its command line.

#pragma once

#include "FaultScript.h"

#include <filesystem>
#include <optional>

namespace wqv
{

struct DemoOptions
{
    bool controllerIsAbsent = false;         ///< it is not plugged in at the start
    FaultScript faults;                      ///< what it does wrong
    double pace = 1.0;                       ///< a factor on all its delays; 0 for none
    std::filesystem::path replayedTrace;     ///< the recorded controller takes its place; empty for none
    std::filesystem::path receivedDirectory; ///< where to write what it received; empty for nowhere
};

/** Reads the command line. Help, version and errors are printed.
    @param exitStatus  set when there is nothing more to do
    @returns nothing then */
[[nodiscard]] std::optional<DemoOptions> readDemoOptions (int argc, const char* const* argv, int& exitStatus);

} // namespace wqv
