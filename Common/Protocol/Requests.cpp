// SPDX-License-Identifier: GPL-3.0-or-later
// Builds the five requests, byte by byte.

#include "Requests.h"

#include "LittleEndian.h"

#include <algorithm>

namespace wqv
{
namespace
{

constexpr std::uint8_t enabledMark = 0x80;
constexpr std::size_t firstEntry = 10;
constexpr std::size_t entrySize = 3;

static_assert (firstEntry + entrySize * maximumBlockCount <= requestSize);

Request requestOf (RequestCode code)
{
    return { static_cast<std::uint8_t> (code) };
}

std::uint32_t enabledSize (std::span<const fw_info_t> blocks)
{
    std::uint32_t size = 0;

    for (const auto& block : blocks)
        size += block.enabled ? block.size : 0;

    return size;
}

} // namespace

Request enterUpdateModeRequest()
{
    return requestOf (RequestCode::enterUpdateMode);
}

Request packageSummaryRequest (const upd_info_t& info, const FirmwareBlocks& blocks)
{
    auto request = requestOf (RequestCode::packageSummary);
    const std::span fields (request);
    const auto used = std::span (blocks).first (info.blockCount);
    const auto shiftedVersion = static_cast<std::uint32_t> (info.version) << 4;

    request[2] = static_cast<std::uint8_t> (shiftedVersion >> 8);
    request[3] = static_cast<std::uint8_t> (shiftedVersion);
    putLittleEndian (fields.subspan (4, 3), info.totalSize);
    putLittleEndian (fields.subspan (7, 3), enabledSize (used));

    for (std::size_t i = 0; i < used.size(); ++i)
    {
        const auto entry = fields.subspan (firstEntry + entrySize * i, entrySize);
        entry[0] = static_cast<std::uint8_t> ((i + 1) | (used[i].enabled ? enabledMark : 0));
        putLittleEndian (entry.subspan (1), used[i].crc16);
    }

    return request;
}

Request blockHeaderRequest (std::uint8_t number, std::uint32_t size)
{
    auto request = requestOf (RequestCode::blockHeader);
    request[1] = number;
    putLittleEndian (std::span (request).subspan (2, 3), size);
    return request;
}

Request blockDataRequest (std::uint8_t number, std::span<const std::uint8_t> data, std::uint32_t piece)
{
    auto request = requestOf (RequestCode::blockData);
    const auto rest = data.subspan (piece * pieceSize);

    request[1] = number;
    std::ranges::copy (rest.first (std::min (rest.size(), pieceSize)), request.begin() + 2);
    return request;
}

Request finishRequest()
{
    return requestOf (RequestCode::finish);
}

} // namespace wqv
