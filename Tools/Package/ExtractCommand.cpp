// SPDX-License-Identifier: GPL-3.0-or-later
// wqv-package extract: the plain data of every block.

#include "Commands.h"
#include "FaultText.h"
#include "OutputFile.h"
#include "Utf8Path.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>

namespace wqv
{
namespace
{

struct ExtractArguments
{
    std::string file;
    std::string directory;
};

std::string extract (const ExtractArguments& arguments)
{
    upd_info_t info;
    FirmwareBlocks blocks;

    const auto input = pathFromUtf8 (arguments.file);

    if (const auto verdict = loadPackage (input, info, blocks); verdict.fault != PackageFault::none)
        return arguments.file + ": " + describe (verdict);

    const auto directory = pathFromUtf8 (arguments.directory);
    std::error_code error;
    std::filesystem::create_directories (directory, error);

    if (error)
        return arguments.directory + ": cannot be made: " + error.message();

    for (unsigned i = 0; i < info.blockCount; ++i)
    {
        std::array<char, 32> name {};
        std::snprintf (name.data(), name.size(), "block-%02u-%04X.bin", i + 1, unsigned { blocks[i].id });

        // A link in there could lead out of the directory.
        auto problem = writeWholeFile (directory / name.data(), Links::replace, blocks[i].data, { &input, 1 });

        if (! problem.empty())
            return problem;
    }

    return {};
}

} // namespace

void addExtractCommand (CLI::App& app, ExitCode& result)
{
    const auto arguments = std::make_shared<ExtractArguments>();
    auto* command = app.add_subcommand ("extract", "Write the plain data of every block to DIR/block-NN-IDID.bin");

    command->add_option ("FILE", arguments->file, "The package; refused if anything is wrong with it")->required();
    command->add_option ("DIR", arguments->directory, "The directory to write to; made if it is not there")->required();
    command->callback ([arguments, &result] { result = report (extract (*arguments)); });
}

} // namespace wqv
