// SPDX-License-Identifier: GPL-3.0-or-later
// A walk over the descriptor's items.

#include "ReportDescriptor.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace wqv
{
namespace
{

constexpr std::uint8_t longItem = 0xFE;

// Short items without the two bits of their size.
constexpr std::uint8_t outputItem = 0x90;
constexpr std::uint8_t reportSizeItem = 0x74;
constexpr std::uint8_t reportIdItem = 0x84;
constexpr std::uint8_t reportCountItem = 0x94;

std::uint32_t littleEndian (std::span<const std::uint8_t> bytes)
{
    std::uint32_t value = 0;

    for (std::size_t i = bytes.size(); i-- > 0;)
        value = (value << 8) | bytes[i];

    return value;
}

} // namespace

std::uint32_t outputReportLengthOf (std::span<const std::uint8_t> descriptor)
{
    std::array<std::uint64_t, 256> bits {}; // of each report id
    std::uint64_t reportSize = 0;
    std::uint64_t reportCount = 0;
    std::size_t reportId = 0;

    while (! descriptor.empty())
    {
        const auto prefix = descriptor[0];

        if (prefix == longItem)
        {
            const std::size_t length = descriptor.size() > 1 ? 3U + descriptor[1] : 1U;
            descriptor = descriptor.subspan (std::min (length, descriptor.size()));
            continue;
        }

        const std::size_t dataSize = prefix % 4 == 3 ? 4 : prefix % 4;
        const auto data = descriptor.subspan (1, std::min (dataSize, descriptor.size() - 1));
        const auto value = littleEndian (data);

        switch (prefix & 0xFC)
        {
            case reportSizeItem: reportSize = value; break;
            case reportCountItem: reportCount = value; break;
            case reportIdItem: reportId = value % bits.size(); break;
            case outputItem: bits[reportId] += reportSize * reportCount; break;
            default: break;
        }

        descriptor = descriptor.subspan (1 + data.size());
    }

    constexpr std::uint64_t largest = 0xFFFF;
    return static_cast<std::uint32_t> (std::min (std::ranges::max (bits) / 8, largest));
}

} // namespace wqv
