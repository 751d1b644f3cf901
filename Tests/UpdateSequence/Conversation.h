// SPDX-License-Identifier: GPL-3.0-or-later
// One update from a made-up package to a virtual controller.

#pragma once

#include "Checksums.h"
#include "ScriptedLink.h"

#include <algorithm>
#include <cstdlib>
#include <random>
#include <utility>

namespace wqv
{

/** Package, controller and the link between them; run() once. */
struct Conversation
{
    /** @param sizes  of the blocks; negative for a block that is not enabled */
    explicit Conversation (const std::vector<int>& sizes, FaultScript faults = {}, ControllerPace pace = {})
        : controller (std::move (faults), pace)
    {
        for (const auto size : sizes)
        {
            auto& block = blocks[info.blockCount++];
            block.enabled = size >= 0;
            block.size = static_cast<std::uint32_t> (std::abs (size));
            block.data.resize (block.size);
            std::ranges::generate (block.data, [this] { return static_cast<std::uint8_t> (random()); });
            block.crc16 = static_cast<std::uint16_t> (calcCRC16 (block.data));
            info.totalSize += block.size;
        }
    }

    [[nodiscard]] bool run() { return UpdateSequence (link, info, blocks).run(); }

    /** The number of the blocks that were to be written but were not received whole. */
    [[nodiscard]] std::vector<std::uint8_t> missing() const
    {
        std::vector<std::uint8_t> numbers;

        for (std::uint8_t number = 1; number <= info.blockCount; ++number)
        {
            const auto& block = blocks[number - 1U];
            const auto found = controller.receivedBlocks().find (number);
            const auto isReceived = found != controller.receivedBlocks().end() && found->second == block.data;

            if (block.enabled && ! isReceived)
                numbers.push_back (number);
        }

        return numbers;
    }

    upd_info_t info { .version = 105 };
    FirmwareBlocks blocks;
    std::minstd_rand random;
    VirtualController controller;
    ScriptedLink link { controller };
};

/** Blocks of three pieces, one full piece, and a piece and a byte; the second is not sent. */
inline const std::vector<int> sampleSizes { 300, -50, 126, 127 };

} // namespace wqv
