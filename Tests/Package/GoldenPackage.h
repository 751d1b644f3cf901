// SPDX-License-Identifier: GPL-3.0-or-later
// A small package, written out by hand: a plain block, a scrambled one, one that is not to be written.

#pragma once

#include "Checksums.h"
#include "PackageWriter.h"

#include <array>
#include <string_view>

namespace wqv
{

using Bytes = std::vector<std::uint8_t>;

// clang-format off
inline constexpr std::array<std::uint8_t, 132> goldenPackage {
    'U', 'P', 'D', ' ',  '0', '1', '0', '0',  0, 0, 0, 0,
    'W', 'Q', 'V', 'K',  'R', 'V', '2', '0',  '1', '0', '5', 0,  3, 0, 0, 0,

    0, 0, 0, 0,  0, 0, 0, 0,  '0', '0', '0', '1',  'Y', 0, 0,  0, 0, 0, 0, 0,  3, 0, 0, 0,
    'a', 'b', 'c', 0,  0, 0, 0xD6, 0x9D,

    0x78, 0x56, 0x34, 0x12,  0, 0, 0, 0,  '1', 'A', '2', 'F',  'Y', 1, 42,  0, 0, 0, 0, 0,  5, 0, 0, 0,
    0x1E, 0x32, 0x52, 0x82, 0x39, 0x57, 0x3E, 0xEE,  0, 0, 0xD6, 0xCB,

    0, 0, 0, 0,  0, 0, 0, 0,  '0', '0', 'F', 'F',  'N', 0, 0,  0, 0, 0, 0, 0,  4, 0, 0, 0,
    1, 2, 3, 4,  0, 0, 0x03, 0x0D,

    0xF3, 0xA2, 0x96, 0x23
};
// clang-format on

inline constexpr std::array<std::size_t, 4> goldenBlockOffsets { 28, 60, 96, 128 };

inline PackageDescription goldenDescription()
{
    PackageDescription package { .version = 105, .blocks = std::vector<BlockDescription> (3) };
    package.blocks[0] = { .id = 0x0001, .data = { 'a', 'b', 'c' } };
    package.blocks[1] = { .id = 0x1A2F,
                          .data = { 'H', 'e', 'l', 'l', 'o' },
                          .enabled = true,
                          .scramble = true,
                          .seed = 0x12345678,
                          .keyIndex = 42 };
    package.blocks[2] = { .id = 0x00FF, .data = { 1, 2, 3, 4 }, .enabled = false };
    return package;
}

/** Bytes followed by their own CRC-32, so that what parses them is reached. */
inline Bytes sealed (std::span<const std::uint8_t> body)
{
    Bytes file (body.begin(), body.end());
    const auto crc = updateCRC32 (0xFFFFFFFF, body);

    for (const auto shift : { 24, 16, 8, 0 })
        file.push_back (static_cast<std::uint8_t> (crc >> shift));

    return file;
}

} // namespace wqv
