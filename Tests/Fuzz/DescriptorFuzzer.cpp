// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzzes the reader of HID report descriptors, beside one that is written out plainly.

#include "Fuzz.h"
#include "ReportDescriptor.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace wqv
{
namespace
{

/** Bytes of the longest report, from the bits of each: floating point, so that no sum is too large. */
std::uint32_t longest (const std::map<std::uint32_t, double>& bitsOfReports)
{
    double bits = 0;

    for (const auto& [id, sum] : bitsOfReports)
        bits = std::max (bits, sum);

    return static_cast<std::uint32_t> (std::min (bits / 8, 65535.0));
}

ReportLengths plainlyRead (Input input)
{
    std::map<int, std::map<std::uint32_t, double>> bits; // of each report, by the kind of item
    std::uint32_t size = 0;
    std::uint32_t count = 0;
    std::uint32_t id = 0;

    while (! input.isOver())
    {
        const auto prefix = input.byte();

        if (prefix == 0xFE) // a long item: length, tag, data
        {
            for (int rest = input.byte() + 1; rest > 0; --rest)
                std::ignore = input.byte();

            continue;
        }

        std::uint32_t value = 0;

        for (int i = 0; i < (prefix % 4 == 3 ? 4 : prefix % 4); ++i)
            value |= std::uint32_t { input.byte() } << (8 * i);

        switch (prefix / 4)
        {
            case 0x74 / 4: size = value; break;
            case 0x94 / 4: count = value; break;
            case 0x84 / 4: id = value % 256; break;
            default: bits[prefix / 4][id] += static_cast<double> (size) * count; break;
        }
    }

    return { .input = longest (bits[0x80 / 4]), .output = longest (bits[0x90 / 4]) };
}

} // namespace
} // namespace wqv

int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    const auto read = wqv::reportLengthsOf ({ data, size });
    const auto expected = wqv::plainlyRead (wqv::Input ({ data, size }));

    wqv::expect (read.input == expected.input, "the length of the input report");
    wqv::expect (read.output == expected.output, "the length of the output report");
    return 0;
}
