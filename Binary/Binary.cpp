// SPDX-License-Identifier: GPL-3.0-or-later
// The tables of the embedded files.

#include "Binary.h"

namespace wqv
{

const std::array<EmbeddedFile, languageCount> textList { {
    { &english_txt_pointer, &english_txt_length },
} };

const std::array<EmbeddedFile, 1> imageList { {
    { &warning_png_pointer, &warning_png_length },
} };

} // namespace wqv
