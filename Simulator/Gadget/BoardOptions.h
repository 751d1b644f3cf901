// SPDX-License-Identifier: GPL-3.0-or-later
// What wqv-controller can be told on its command line.

#pragma once

#include "ControllerOptions.h"
#include "UsbGadget.h"

#include <filesystem>
#include <optional>
#include <string>

namespace wqv
{

struct BoardOptions
{
    ControllerOptions controller;
    GadgetDescription gadget;
    std::size_t controllerInterface = 0; ///< the one that holds the conversation, by its number
    std::string port;                    ///< empty for the only one
    std::filesystem::path reportFile;    ///< empty for none
};

/** Reads the command line. Help, version and errors are printed.
    @param exitStatus  set when there is nothing more to do
    @returns nothing then */
[[nodiscard]] std::optional<BoardOptions> readBoardOptions (int argc, const char* const* argv, int& exitStatus);

} // namespace wqv
