// SPDX-License-Identifier: GPL-3.0-or-later
// The values of create's options --version and --block.

#pragma once

#include "PackageWriter.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace wqv
{

/** One --block: id=0001,file=main.bin[,disabled][,scramble][,seed=0x1234][,key-index=7]. */
struct BlockOption
{
    BlockDescription block; ///< still without data
    std::filesystem::path file;
};

/** Both parse @p text into @p value. @returns what is wrong with it, for people; empty when nothing is */
[[nodiscard]] std::string parseBlockOption (std::string_view text, BlockOption& value);
[[nodiscard]] std::string parseVersion (std::string_view text, unsigned& value);

} // namespace wqv
