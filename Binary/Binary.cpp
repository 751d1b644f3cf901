// SPDX-License-Identifier: GPL-3.0-or-later
// The tables of the embedded files.

#include "Binary.h"

namespace wqv
{

const std::array<EmbeddedFile, languageCount> textList { {
    { &english_txt_pointer, &english_txt_length },
    { &french_txt_pointer, &french_txt_length },
    { &german_txt_pointer, &german_txt_length },
    { &spanish_txt_pointer, &spanish_txt_length },
    { &italian_txt_pointer, &italian_txt_length },
    { &dutch_txt_pointer, &dutch_txt_length },
    { &russian_txt_pointer, &russian_txt_length },
    { &portuguese_txt_pointer, &portuguese_txt_length },
    { &simplified_chinese_txt_pointer, &simplified_chinese_txt_length },
    { &traditional_chinese_txt_pointer, &traditional_chinese_txt_length },
    { &korean_txt_pointer, &korean_txt_length },
    { &japanese_txt_pointer, &japanese_txt_length },
} };

const std::array<EmbeddedFile, 1> imageList { {
    { &warning_png_pointer, &warning_png_length },
} };

const std::array<EmbeddedFamily, familyCount> fontList { {
    { "WQV Sans",
      { &wqv_sans_regular_otf_pointer, &wqv_sans_regular_otf_length },
      { &wqv_sans_bold_otf_pointer, &wqv_sans_bold_otf_length } },
    { "WQV Sans SC",
      { &wqv_sans_sc_regular_otf_pointer, &wqv_sans_sc_regular_otf_length },
      { &wqv_sans_sc_bold_otf_pointer, &wqv_sans_sc_bold_otf_length } },
    { "WQV Sans TC",
      { &wqv_sans_tc_regular_otf_pointer, &wqv_sans_tc_regular_otf_length },
      { &wqv_sans_tc_bold_otf_pointer, &wqv_sans_tc_bold_otf_length } },
    { "WQV Sans KR",
      { &wqv_sans_kr_regular_otf_pointer, &wqv_sans_kr_regular_otf_length },
      { &wqv_sans_kr_bold_otf_pointer, &wqv_sans_kr_bold_otf_length } },
    { "WQV Sans JP",
      { &wqv_sans_jp_regular_otf_pointer, &wqv_sans_jp_regular_otf_length },
      { &wqv_sans_jp_bold_otf_pointer, &wqv_sans_jp_bold_otf_length } },
} };

} // namespace wqv
