// SPDX-License-Identifier: GPL-3.0-or-later
// wqv-package: makes, checks, shows and takes apart update packages.

#include "Commands.h"
#include "EscapedText.h"
#include "StandardStreams.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>

namespace wqv
{

ExitCode report (const std::string& problem)
{
    if (problem.empty())
        return ExitCode::success;

    std::cerr << "wqv-package: " << escapedText (problem) << '\n';
    return ExitCode::failure;
}

namespace
{

ExitCode run (int argumentCount, const char* const* arguments)
{
    CLI::App app ("Makes, checks, shows and takes apart update packages of the WQV-KRV20.", "wqv-package");
    app.set_version_flag ("--version", "wqv-package " WQV_PROJECT_VERSION);
    app.require_subcommand (0, 1);
    app.failure_message ([] (const CLI::App*, const CLI::Error& error)
                         { return escapedText (error.what()) + "\nRun with --help for more information.\n"; });

    auto result = ExitCode::success;
    addCreateCommand (app, result);
    addVerifyCommand (app, result);
    addInspectCommand (app, result);
    addExtractCommand (app, result);

    try
    {
        app.parse (argumentCount, arguments);

        // Asked for only now, so that a misspelt one is named.
        if (app.get_subcommands().empty())
            throw CLI::RequiredError::Subcommand (1);
    }
    catch (const CLI::ParseError& error)
    {
        // A request for help or the version comes as an error too, with the code 0.
        result = app.exit (error) == 0 ? ExitCode::success : ExitCode::usage;
    }

    if (! std::cout.flush())
        return report ("the output cannot be written");

    return result;
}

} // namespace
} // namespace wqv

int main (int argumentCount, char** arguments)
{
    wqv::openStandardStreams();

    try
    {
        return static_cast<int> (wqv::run (argumentCount, arguments));
    }
    catch (const std::exception& error)
    {
        return static_cast<int> (wqv::report (error.what()));
    }
}
