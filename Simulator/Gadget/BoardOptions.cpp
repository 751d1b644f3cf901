// SPDX-License-Identifier: GPL-3.0-or-later
// The command line of wqv-controller.

#include "BoardOptions.h"

#include "DeviceIds.h"
#include "Requests.h"

#include <CLI/CLI.hpp>

#include <fstream>
#include <system_error>
#include <unistd.h>

namespace wqv
{

std::optional<BoardOptions> readBoardOptions (int argc, const char* const* argv, int& exitStatus)
{
    BoardOptions options;
    options.gadget.vendorId = kVendorId;
    options.gadget.productId = HidDeviceType[1];
    std::string secondInterface;

    CLI::App app (
        "Makes a USB device port of this machine a WQV-KRV20. The lines \"plug\", \"unplug\" and \"quit\" on its "
        "standard input do what they say.",
        "wqv-controller");
    app.set_version_flag ("--version", "wqv-controller " WQV_PROJECT_VERSION);
    addControllerOptions (app, options.controller);
    app.add_option ("--udc", options.port, "The port, as /sys/class/udc names it; the only one if left out");
    app.add_option ("--vendor", options.gadget.vendorId, "Its USB vendor id, as in 0x1209")
        ->check (CLI::Range (0x0001, 0xFFFF));
    app.add_option ("--product", options.gadget.productId, "Its USB product id, as in 0x0001")
        ->check (CLI::Range (0x0001, 0xFFFF));
    app.add_option ("--second-interface",
                    secondInterface,
                    "Gives it another HID interface, before or after the right one, with reports of 8 bytes")
        ->check (CLI::IsMember ({ "before", "after" }));
    app.add_option ("--report", options.reportFile, "At exit, write into this JSON file how the conversation went")
        ->excludes (app.get_option ("--replay"))
        ->check ([] (const std::string& file)
                 { return std::ofstream (file, std::ios::app) ? "" : "cannot write " + file; });
    app.get_option ("--received")
        ->check (
            [] (const std::string& folder)
            {
                std::error_code error;
                std::filesystem::create_directories (folder, error);
                const auto isWritable = ! error && access (folder.c_str(), W_OK | X_OK) == 0;
                return isWritable ? "" : "cannot write into " + folder;
            });

    if (const auto status = parseCommandLine (app, argc, argv))
    {
        exitStatus = *status;
        return {};
    }

    constexpr std::uint8_t otherLength = 8;
    auto& lengths = options.gadget.reportLengths;
    lengths = { requestSize };

    if (secondInterface == "before")
    {
        lengths.insert (lengths.begin(), otherLength);
        options.controllerInterface = 1;
    }
    else if (secondInterface == "after")
        lengths.push_back (otherLength);

    return options;
}

} // namespace wqv
