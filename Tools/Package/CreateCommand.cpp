// SPDX-License-Identifier: GPL-3.0-or-later
// wqv-package create: a package from files.

#include "BlockOption.h"
#include "Commands.h"
#include "FaultText.h"
#include "OutputFile.h"
#include "Utf8Path.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace wqv
{
namespace
{

struct CreateArguments
{
    std::string version;
    std::vector<std::string> blocks;
    std::string output;
};

/** The description without the blocks' data; a value that makes no sense ends the parsing as a usage error. */
PackageDescription describePackage (const CreateArguments& arguments, std::vector<std::filesystem::path>& files)
{
    PackageDescription package;

    if (const auto problem = parseVersion (arguments.version, package.version); ! problem.empty())
        throw CLI::ValidationError ("--version", problem);

    for (const auto& text : arguments.blocks)
    {
        BlockOption option;

        if (const auto problem = parseBlockOption (text, option); ! problem.empty())
            throw CLI::ValidationError ("--block " + std::to_string (package.blocks.size() + 1), problem);

        package.blocks.push_back (option.block);
        files.push_back (option.file);
    }

    if (const auto reason = reasonAgainstHeader (package); ! reason.empty())
        throw CLI::ValidationError (reason);

    return package;
}

std::string create (const CreateArguments& arguments)
{
    std::vector<std::filesystem::path> files;
    auto package = describePackage (arguments, files);

    for (std::size_t i = 0; i < files.size(); ++i)
    {
        auto [fault, bytes] = readPackageFile (files[i]);

        if (fault != PackageFault::none)
            return "block " + std::to_string (i + 1) + ", " + files[i].string() + ": " + std::string (describe (fault));

        package.blocks[i].data = std::move (bytes);
    }

    if (auto reason = reasonAgainst (package); ! reason.empty())
        return reason;

    return writeWholeFile (pathFromUtf8 (arguments.output), Links::follow, writePackage (package), files);
}

} // namespace

void addCreateCommand (CLI::App& app, ExitCode& result)
{
    const auto arguments = std::make_shared<CreateArguments>();
    auto* command = app.add_subcommand ("create", "Make an update package from the files of its blocks");

    command->add_option ("--version", arguments->version, "Firmware version, 0.01 to 9.99")
        ->type_name ("N.NN")
        ->required();

    command
        ->add_option (
            "--block",
            arguments->blocks,
            "A block; repeat it for each one, at most 16 times, in their order. id is four hexadecimal digits. "
            "disabled: not to be written to the controller. The seed (32 bits) and the key index (0 to 255) "
            "enter the key of a scrambled block. A file name cannot contain a comma")
        ->type_name ("id=0001,file=NAME[,disabled][,scramble][,seed=0x1234][,key-index=7]")
        ->allow_extra_args (false)
        ->required();

    command->add_option ("-o,--output", arguments->output, "The package to write; never one of the blocks' files")
        ->type_name ("FILE")
        ->required();

    command->callback ([arguments, &result] { result = report (create (*arguments)); });
}

} // namespace wqv
