// SPDX-License-Identifier: GPL-3.0-or-later
// What the program keeps of an update package: a summary, and a record for each block.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace wqv
{

/** The package summary. */
struct upd_info_t
{
    std::uint32_t totalSize = 0; ///< bytes of plain data in all blocks, enabled or not
    std::int32_t version = 0;    ///< as a decimal number: 105 is version 1.05
    std::uint8_t blockCount = 0; ///< blocks in the package, enabled or not
};

/** One firmware block, its data ready to be sent. */
struct fw_info_t
{
    std::uint32_t id = 0;           ///< 16 bits; names the block for people and tools, never sent
    bool enabled = false;           ///< to be written to the controller
    bool encrypted = false;         ///< was scrambled in the file
    std::uint8_t keyIndex = 0;      ///< the entry of crcTable in the descrambling key
    std::uint32_t size = 0;         ///< bytes of plain data
    std::vector<std::uint8_t> data; ///< the plain data, exactly size bytes once it has been read
    std::uint16_t crc16 = 0;        ///< calcCRC16 of the plain data, as the file states it
};

/** The format holds at most 16 blocks. */
inline constexpr std::size_t maximumBlockCount = 16;

/** The records of all blocks, in the order of the file. Those from blockCount on are not used. */
using FirmwareBlocks = std::array<fw_info_t, maximumBlockCount>;

} // namespace wqv
