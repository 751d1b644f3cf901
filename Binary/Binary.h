// SPDX-License-Identifier: GPL-3.0-or-later
// The embedded pictures and typefaces, as tables. The embedded texts are in the table of the languages, Languages.h.

#pragma once

#include "EmbeddedFiles.h"

#include <array>
#include <cstdint>
#include <span>

namespace wqv
{

/** The pictures, by image index: the warning sign. */
inline constexpr std::array imageList { warning_png };

/** An embedded family of typefaces. */
struct EmbeddedFamily
{
    const char* name;
    std::span<const std::uint8_t> regular;
    std::span<const std::uint8_t> bold;
};

/** The families; the first one is also that of fonts without a name. */
inline constexpr auto fontList = std::to_array<EmbeddedFamily> ({
    { "WQV Sans", wqv_sans_regular_otf, wqv_sans_bold_otf },
    { "WQV Sans SC", wqv_sans_sc_regular_otf, wqv_sans_sc_bold_otf },
    { "WQV Sans TC", wqv_sans_tc_regular_otf, wqv_sans_tc_bold_otf },
    { "WQV Sans KR", wqv_sans_kr_regular_otf, wqv_sans_kr_bold_otf },
    { "WQV Sans JP", wqv_sans_jp_regular_otf, wqv_sans_jp_bold_otf },
});

} // namespace wqv
