// SPDX-License-Identifier: GPL-3.0-or-later
// wqv-package inspect: what a package says, as a table or as JSON.

#include "Commands.h"
#include "FaultText.h"
#include "Inspection.h"
#include "Utf8Path.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>

namespace wqv
{
namespace
{

using Json = nlohmann::ordered_json;

struct InspectArguments
{
    std::string file;
    bool json = false;
};

std::string hex (std::uint32_t value, int digits)
{
    std::ostringstream text;
    text << std::uppercase << std::hex << std::setfill ('0') << std::setw (digits) << value;
    return text.str();
}

std::string reasonNotOffered (const Inspection& package)
{
    const auto first = package.faults.empty() ? PackageVerdict {} : package.faults.front();
    return reasonNotOffered (first, package.info);
}

Json toJson (const std::optional<ChecksumPair>& crc, int digits)
{
    if (! crc)
        return nullptr;

    return { { "stored", "0x" + hex (crc->stored, digits) },
             { "calculated", "0x" + hex (crc->calculated, digits) },
             { "right", crc->stored == crc->calculated } };
}

Json toJson (const InspectedBlock& block, std::size_t number)
{
    return { { "number", number },
             { "offset", block.offset },
             { "id", hex (block.record.id, 4) },
             { "enabled", block.record.enabled },
             { "scrambled", block.record.encrypted },
             { "seed", "0x" + hex (block.seed, 8) },
             { "keyIndex", block.record.keyIndex },
             { "size", block.record.size },
             { "crc16", toJson (block.crc16, 4) } };
}

Json toJson (const Inspection& package)
{
    Json json { { "fileSize", package.fileSize }, { "crc32", toJson (package.crc32, 8) } };

    if (package.hasHeader)
        json.update ({ { "magic", package.magic },
                       { "formatVersion", package.formatVersion },
                       { "productCode", package.productCode },
                       { "versionDigits", package.versionDigits },
                       { "version", package.info.version },
                       { "blockCount", package.info.blockCount },
                       { "totalSize", package.info.totalSize },
                       { "enabledSize", package.enabledSize },
                       { "surplus", package.surplus } });

    json["blocks"] = Json::array();
    json["faults"] = Json::array();

    for (const auto& block : package.blocks)
        json["blocks"].push_back (toJson (block, json["blocks"].size() + 1));

    for (const auto& fault : package.faults)
    {
        const auto number = fault.block == 0 ? Json (nullptr) : Json (fault.block);
        json["faults"].push_back (
            { { "what", describe (fault.fault) }, { "block", number }, { "offset", fault.offset } });
    }

    const auto reason = reasonNotOffered (package);
    json["offered"] = reason.empty();
    json["reason"] = reason.empty() ? Json (nullptr) : Json (reason);
    return json;
}

std::string checksumText (const std::optional<ChecksumPair>& crc, int digits)
{
    if (! crc)
        return "cannot be read";

    return crc->stored == crc->calculated
               ? hex (crc->stored, digits) + " (right)"
               : hex (crc->stored, digits) + " (WRONG: " + hex (crc->calculated, digits) + ")";
}

void printBlocks (std::ostream& out, const Inspection& package)
{
    out << "block      offset  id    write  scrambled  seed      key index        size  CRC-16\n";

    for (std::size_t i = 0; i < package.blocks.size(); ++i)
    {
        const auto& block = package.blocks[i];
        const auto& record = block.record;

        out << std::right << std::setw (5) << i + 1 << std::setw (12) << block.offset << "  " << hex (record.id, 4)
            << std::left << "  " << std::setw (7) << (record.enabled ? "yes" : "no") << std::setw (11)
            << (record.encrypted ? "yes" : "no") << hex (block.seed, 8) << std::right << std::setw (11)
            << int { record.keyIndex } << std::setw (12) << record.size << "  " << checksumText (block.crc16, 4)
            << '\n';
    }
}

void print (std::ostream& out, const Inspection& package)
{
    out << "file size:      " << package.fileSize << " bytes\n"
        << "CRC-32:         " << checksumText (package.crc32, 8) << '\n';

    if (package.hasHeader)
    {
        out << "magic:          \"" << package.magic << "\"\n"
            << "format version: \"" << package.formatVersion << "\"\n"
            << "product code:   \"" << package.productCode << "\"\n"
            << "version:        " << versionText (package.info.version) << " (\"" << package.versionDigits << "\")\n"
            << "block count:    " << int { package.info.blockCount } << '\n'
            << "sizes:          " << package.info.totalSize << " bytes in all, " << package.enabledSize
            << " to be written\n";

        if (package.surplus != 0)
            out << "surplus:        " << package.surplus << " bytes behind the last block\n";

        printBlocks (out, package);
    }

    for (const auto& fault : package.faults)
        out << "WRONG: " << describe (fault) << '\n';

    const auto reason = reasonNotOffered (package);
    out << (reason.empty() ? "The program offers this package." : "The program does not offer this package: " + reason)
        << '\n';
}

std::string run (const InspectArguments& arguments)
{
    const auto [fault, bytes] = readPackageFile (pathFromUtf8 (arguments.file));

    if (fault != PackageFault::none)
        return arguments.file + ": " + std::string (describe (fault));

    const auto package = inspect (bytes);

    if (arguments.json)
        std::cout << toJson (package).dump (2) << '\n';
    else
        print (std::cout, package);

    return {};
}

} // namespace

void addInspectCommand (CLI::App& app, ExitCode& result)
{
    const auto arguments = std::make_shared<InspectArguments>();
    auto* command =
        app.add_subcommand ("inspect", "Show all that a package says, a damaged one as far as it can be read");

    command->add_option ("FILE", arguments->file, "The package")->required();
    command->add_flag ("--json", arguments->json, "As JSON");
    command->callback ([arguments, &result] { result = report (run (*arguments)); });
}

} // namespace wqv
