// SPDX-License-Identifier: GPL-3.0-or-later
// The commands of wqv-package.

#pragma once

#include <string>

namespace CLI
{
class App;
}

namespace wqv
{

/** What the process returns; a wrong command line is usage. */
enum class ExitCode
{
    success = 0,
    failure = 1,
    usage = 2
};

/** Each adds its subcommand to @p app, which sets @p result when it has run. Both must outlive the parsing. */
void addCreateCommand (CLI::App& app, ExitCode& result);
void addVerifyCommand (CLI::App& app, ExitCode& result);
void addInspectCommand (CLI::App& app, ExitCode& result);
void addExtractCommand (CLI::App& app, ExitCode& result);

/** Says on the error output what went wrong; empty when nothing did. @returns failure, or success for an empty text */
[[nodiscard]] ExitCode report (const std::string& problem);

} // namespace wqv
