// SPDX-License-Identifier: GPL-3.0-or-later
// Parses the command line of wqv-update.

#include "Options.h"

#include "EscapedText.h"
#include "Session.h"
#include "Utf8Path.h"

#include <CLI/CLI.hpp>

namespace wqv
{

std::optional<Options> readOptions (int argumentCount, const char* const* arguments, int& exitStatus)
{
    Options options;
    CLI::App app ("Updates the firmware of a WQV-KRV20, without a window.", "wqv-update");

    app.set_version_flag ("--version", "wqv-update " WQV_PROJECT_VERSION);
    app.failure_message ([] (const CLI::App*, const CLI::Error& error)
                         { return escapedText (error.what()) + "\nRun with --help for more information.\n"; });
    app.footer ("Exit status: 0 complete, 1 failed, 2 wrong command line, 3 no controller, 4 no fit update package.");

    auto* const package = app.add_option_function<std::string> (
                                 "--package",
                                 [&options] (const std::string& text) { options.package = pathFromUtf8 (text); },
                                 "The update package [beside this program]")
                              ->type_name ("FILE");
    auto* const yes = app.add_flag ("-y,--yes", options.yes, "Update without asking");
    auto* const wait = app.add_flag ("--wait", options.wait, "Wait for a controller to be plugged in");
    auto* const repeat = app.add_flag (
        "--repeat", options.repeat, "Go on with the next controller after each, until Ctrl-C; waits as --wait does");
    app.add_flag ("--json", options.json, "As JSON, one object a line");
    app.add_option_function<std::string> (
           "--trace",
           [&options] (const std::string& text) { options.trace = pathFromUtf8 (text); },
           "Record every report in this file")
        ->type_name ("FILE");

    auto* const list =
        app.add_flag ("--list", options.list, "Show the HID devices and which is the controller; updates nothing");

    for (auto* const other : { package, yes, wait, repeat })
        list->excludes (other);

    try
    {
        app.parse (argumentCount, arguments);
    }
    catch (const CLI::ParseError& error)
    {
        // A request for help or the version comes as an error too, with the code 0.
        exitStatus = static_cast<int> (app.exit (error) == 0 ? ExitStatus::complete : ExitStatus::usage);
        return {};
    }

    options.wait = options.wait || options.repeat;
    return options;
}

} // namespace wqv
