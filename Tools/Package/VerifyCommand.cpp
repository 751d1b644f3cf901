// SPDX-License-Identifier: GPL-3.0-or-later
// wqv-package verify: whether the program would offer a package, and why not.

#include "Commands.h"
#include "EscapedText.h"
#include "FaultText.h"
#include "Utf8Path.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <memory>

namespace wqv
{
namespace
{

std::string verify (const std::string& file)
{
    upd_info_t info;
    FirmwareBlocks blocks;
    const auto verdict = loadPackage (pathFromUtf8 (file), info, blocks);

    if (const auto reason = reasonNotOffered (verdict, info); ! reason.empty())
        return file + ": " + reason;

    const auto enabled = std::ranges::count (blocks, true, &fw_info_t::enabled);

    std::cout << escapedText (file) << ": version " << versionText (info.version)
              << ", blocks: " << int { info.blockCount } << ", to be written: " << enabled
              << ", bytes in all: " << info.totalSize << '\n';
    return {};
}

} // namespace

void addVerifyCommand (CLI::App& app, ExitCode& result)
{
    const auto file = std::make_shared<std::string>();
    auto* command = app.add_subcommand ("verify", "Tell whether the update program would offer a package, or why not");

    command->add_option ("FILE", *file, "The package")->required();
    command->callback ([file, &result] { result = report (verify (*file)); });
}

} // namespace wqv
