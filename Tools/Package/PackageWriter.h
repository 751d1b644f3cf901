// SPDX-License-Identifier: GPL-3.0-or-later
// The writer of update packages: a plain description in, the bytes of the file out.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace wqv
{

/** One block as its maker describes it. */
struct BlockDescription
{
    std::uint16_t id = 0;
    std::vector<std::uint8_t> data; ///< plain
    bool enabled = true;            ///< to be written to the controller
    bool scramble = false;
    std::uint32_t seed = 0;    ///< enters the scrambling key; is stored in a plain block too
    std::uint8_t keyIndex = 0; ///< likewise
};

/** A package as its maker describes it. */
struct PackageDescription
{
    unsigned version = 0; ///< as a decimal number: 105 is version 1.05
    std::vector<BlockDescription> blocks;
};

/** The highest version that three digits hold: 9.99. */
inline constexpr unsigned maximumVersion = 999;

/** Sizes travel to the controller in 24 bits: a block, and all blocks together, stay below this. */
inline constexpr std::size_t sizeLimit = std::size_t { 1 } << 24;

/** Why a package that is written from @p package could not be loaded, or would not be offered, or could not be told to
    the controller: one sentence for people, empty when there is no such reason. */
[[nodiscard]] std::string reasonAgainst (const PackageDescription& package);

/** The part of reasonAgainst() that needs no data yet: the version and the number of blocks. */
[[nodiscard]] std::string reasonAgainstHeader (const PackageDescription& package);

/** The bytes of the package file, checksums included. The same description always gives the same bytes; bytes that the
    format leaves free are 0.

    It writes what it is told, also what the loader refuses; ask reasonAgainst() first. Of what the fields cannot hold
    (a version above maximumVersion, 256 blocks, 2^32 bytes in a block) the surplus digits or bits are dropped.
*/
[[nodiscard]] std::vector<std::uint8_t> writePackage (const PackageDescription& package);

} // namespace wqv
