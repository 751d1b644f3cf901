// SPDX-License-Identifier: GPL-3.0-or-later
// Writing the blocks that a virtual controller received into files.

#pragma once

#include "VirtualController.h"

#include <filesystem>
#include <string>

namespace wqv
{

/** Writes each block into @p folder as block-NN.bin; the folder is made if need be. An empty name writes nothing.
    @returns what went wrong, for people; empty on success */
[[nodiscard]] std::string writeReceivedBlocks (const VirtualController& controller,
                                               const std::filesystem::path& folder);

} // namespace wqv
