// SPDX-License-Identifier: GPL-3.0-or-later
// Reading the items of a HID report descriptor, for the sizes of its reports.

#include "ReportDescriptor.h"

#include "LittleEndian.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace wqv
{
namespace
{

constexpr std::uint8_t longItem = 0xFE;

// Short items without the two bits of their size.
constexpr std::uint8_t inputItem = 0x80;
constexpr std::uint8_t outputItem = 0x90;
constexpr std::uint8_t reportSizeItem = 0x74;
constexpr std::uint8_t reportIdItem = 0x84;
constexpr std::uint8_t reportCountItem = 0x94;

using BitsOfReports = std::array<std::uint64_t, 256>; ///< by report id

/** Reports are no longer than this, whatever a descriptor says: so no sum of their fields is too large for 64 bits. */
constexpr std::uint64_t mostBits = std::uint64_t { 0xFFFF } * 8;

void add (std::uint64_t& bits, std::uint64_t more)
{
    bits = std::min (bits + std::min (more, mostBits), mostBits);
}

std::uint32_t largestOf (const BitsOfReports& bits)
{
    return static_cast<std::uint32_t> (std::ranges::max (bits) / 8);
}

} // namespace

ReportLengths reportLengthsOf (std::span<const std::uint8_t> descriptor)
{
    BitsOfReports inputBits {};
    BitsOfReports outputBits {};
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
            case reportIdItem: reportId = value % inputBits.size(); break;
            case inputItem: add (inputBits[reportId], reportSize * reportCount); break;
            case outputItem: add (outputBits[reportId], reportSize * reportCount); break;
            default: break;
        }

        descriptor = descriptor.subspan (1 + data.size());
    }

    return { .input = largestOf (inputBits), .output = largestOf (outputBits) };
}

} // namespace wqv
