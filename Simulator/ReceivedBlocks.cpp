// SPDX-License-Identifier: GPL-3.0-or-later
// One file for each received block.

#include "ReceivedBlocks.h"

#include <fstream>
#include <system_error>

namespace wqv
{

std::string writeReceivedBlocks (const VirtualController& controller, const std::filesystem::path& folder)
{
    if (folder.empty())
        return {};

    std::error_code error;
    std::filesystem::create_directories (folder, error);

    for (const auto& [number, data] : controller.receivedBlocks())
    {
        const auto target =
            folder / ("block-" + std::string (number < 10 ? "0" : "") + std::to_string (number) + ".bin");
        std::ofstream file (target, std::ios::binary);
        file.write (reinterpret_cast<const char*> (data.data()), static_cast<std::streamsize> (data.size()));

        if (! file.flush())
            return "cannot write " + target.string();
    }

    return {};
}

} // namespace wqv
