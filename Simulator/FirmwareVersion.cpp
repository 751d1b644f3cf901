// SPDX-License-Identifier: GPL-3.0-or-later
// Firmware versions: text to BCD and back.

#include "FirmwareVersion.h"

namespace wqv
{

std::optional<std::int32_t> parseFirmwareVersion (std::string_view text)
{
    if (text.size() != 4 || text[1] != '.')
        return {};

    std::int32_t bcd = 0;

    for (const auto digit : { text[0], text[2], text[3] })
    {
        if (digit < '0' || digit > '9')
            return {};

        bcd = bcd * 16 + (digit - '0');
    }

    return bcd;
}

std::string firmwareVersionText (std::int32_t bcd)
{
    const auto digit = [bcd] (int place) { return static_cast<char> ('0' + (bcd >> (4 * place)) % 16); };
    return { digit (2), '.', digit (1), digit (0) };
}

} // namespace wqv
