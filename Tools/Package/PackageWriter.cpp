// SPDX-License-Identifier: GPL-3.0-or-later
// Writes a package field by field, from front to back, and finds what speaks against a description.

#include "PackageWriter.h"

#include "LittleEndian.h"
#include "PackageReader.h"

#include <algorithm>
#include <iterator>

namespace wqv
{
namespace
{

using Bytes = std::vector<std::uint8_t>;

/** The last four digits of @p number, most significant first. */
std::array<std::uint8_t, 4> digits (unsigned number, unsigned base)
{
    std::array<std::uint8_t, 4> text {};

    for (std::size_t i = text.size(); i-- > 0; number /= base)
        text[i] = static_cast<std::uint8_t> ("0123456789ABCDEF"[number % base]);

    return text;
}

upd_header_t headerOf (const PackageDescription& package)
{
    const auto version = digits (package.version, 10);

    return { .magic = upd_header_t::rightMagic,
             .formatVersion = upd_header_t::rightFormatVersion,
             .productCode = upd_header_t::rightProductCode,
             .versionDigits = { version[1], version[2], version[3], 0 },
             .blockCount = static_cast<std::uint8_t> (package.blocks.size()) };
}

firmware_header_t headerOf (const BlockDescription& block)
{
    return { .keySeed = block.seed,
             .idDigits = digits (block.id, 16),
             .enableMark = static_cast<std::uint8_t> (block.enabled ? 'Y' : 'N'),
             .encryptMark = static_cast<std::uint8_t> (block.scramble ? 1 : 0),
             .keyIndex = block.keyIndex,
             .size = static_cast<std::uint32_t> (block.data.size()) };
}

void append (Bytes& file, std::span<const std::uint8_t> bytes)
{
    std::ranges::copy (bytes, std::back_inserter (file));
}

void appendFree (Bytes& file, std::size_t count)
{
    file.resize (file.size() + count);
}

void appendLittleEndian (Bytes& file, std::uint32_t value, std::size_t count)
{
    appendFree (file, count);
    putLittleEndian (std::span (file).last (count), value);
}

void appendHeader (Bytes& file, const upd_header_t& header)
{
    append (file, header.magic);
    append (file, header.formatVersion);
    appendFree (file, 4);
    append (file, header.productCode);
    append (file, header.versionDigits);
    file.push_back (header.blockCount);
    appendFree (file, 3);
}

void appendBlock (Bytes& file, const upd_header_t& packageHeader, const BlockDescription& block)
{
    const auto header = headerOf (block);

    appendLittleEndian (file, header.keySeed, 4);
    appendFree (file, 4);
    append (file, header.idDigits);
    append (file, { { header.enableMark, header.encryptMark, header.keyIndex } });
    appendFree (file, 5);
    appendLittleEndian (file, header.size, 4);

    const auto start = file.size();
    append (file, block.data);
    appendFree (file, static_cast<std::size_t> (paddingOf (header.size)));

    // Whole words are scrambled, so the padding is part of it.
    if (block.scramble)
        descramble (std::span (file).subspan (start), createEncryptionKey (crcTable, packageHeader, header));

    appendFree (file, 2);
    appendLittleEndian (file, calcCRC16 (block.data), 2);
}

} // namespace

std::string reasonAgainstHeader (const PackageDescription& package)
{
    if (package.version == 0)
        return "version 0.00 is none that the program offers: it must be above 0";

    if (package.version > maximumVersion)
        return "the version is beyond 9.99, the highest that a package holds";

    if (package.blocks.empty())
        return "a package needs at least one block";

    if (package.blocks.size() > maximumBlockCount)
        return std::to_string (package.blocks.size()) + " blocks are too many: a package holds at most "
               + std::to_string (maximumBlockCount);

    return {};
}

std::string reasonAgainst (const PackageDescription& package)
{
    if (auto reason = reasonAgainstHeader (package); ! reason.empty())
        return reason;

    std::size_t total = 0;

    for (std::size_t i = 0; i < package.blocks.size(); ++i)
    {
        const auto size = package.blocks[i].data.size();
        total += size;

        if (size >= sizeLimit)
            return "block " + std::to_string (i + 1) + " is too large: " + std::to_string (size)
                   + " bytes, where the protocol's 24-bit size field ends at " + std::to_string (sizeLimit - 1);
    }

    if (total == 0)
        return "the blocks hold no data: their total size must be above 0";

    if (total >= sizeLimit)
        return "the blocks are too large together: " + std::to_string (total)
               + " bytes, where the protocol's 24-bit total field ends at " + std::to_string (sizeLimit - 1);

    return {};
}

std::vector<std::uint8_t> writePackage (const PackageDescription& package)
{
    const auto header = headerOf (package);
    Bytes file;
    appendHeader (file, header);

    for (const auto& block : package.blocks)
        appendBlock (file, header, block);

    const auto checksum = calcCRC32 (file);

    for (const auto shift : { 24, 16, 8, 0 })
        file.push_back (static_cast<std::uint8_t> (checksum >> shift));

    return file;
}

} // namespace wqv
