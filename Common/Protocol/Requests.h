// SPDX-License-Identifier: GPL-3.0-or-later
// The five requests of the update protocol as 128-byte output reports; docs/protocol.md has the whole conversation.

#pragma once

#include "PackageRecords.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace wqv
{

/** Byte 0 of an output report. */
enum class RequestCode : std::uint8_t
{
    packageSummary = 0xF0,
    blockHeader = 0xF1,
    finish = 0xF2,
    blockData = 0xF3,
    enterUpdateMode = 0xF4
};

/** Every request is one output report of exactly this many bytes, report id 0. */
inline constexpr std::size_t requestSize = 128;

/** A request, ready to be sent. Bytes that its builder does not name are 0. */
using Request = std::array<std::uint8_t, requestSize>;

/** Bytes of block data in one request: what follows the request code and the block number. */
inline constexpr std::size_t pieceSize = requestSize - 2;

/** 0xF4: asks the controller to enter its update mode. */
[[nodiscard]] Request enterUpdateModeRequest();

/** 0xF0: tells the controller what is coming: version, sizes, and each block's number, enabled mark and CRC-16.

    Version (times 16) is big-endian, the only such field of the protocol; the two sizes are 24-bit little-endian and
    drop higher bits.

    @param info    at most maximumBlockCount blocks
    @param blocks  the records of the package, of which the first info.blockCount are used
*/
[[nodiscard]] Request packageSummaryRequest (const upd_info_t& info, const FirmwareBlocks& blocks);

/** 0xF1: announces one block.

    @param number  the block's 1-based position in the package, counting the blocks that are not sent
    @param size    bytes of data; the field is 24-bit little-endian and drops higher bits
*/
[[nodiscard]] Request blockHeaderRequest (std::uint8_t number, std::uint32_t size);

/** The number of pieces that a block of @p size bytes is sent in: 0 for an empty block. */
[[nodiscard]] constexpr std::uint32_t pieceCount (std::uint32_t size)
{
    return static_cast<std::uint32_t> ((std::uint64_t { size } + pieceSize - 1) / pieceSize);
}

/** 0xF3: one piece of a block's plain data; a short last piece is filled up with zeros.

    @param number  as in the block's header
    @param data    the data of the whole block
    @param piece   counted from 0, below pieceCount (data.size())
*/
[[nodiscard]] Request blockDataRequest (std::uint8_t number, std::span<const std::uint8_t> data, std::uint32_t piece);

/** 0xF2: asks whether the controller has finished; ends the update. */
[[nodiscard]] Request finishRequest();

} // namespace wqv
