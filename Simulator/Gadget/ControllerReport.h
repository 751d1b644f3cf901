// SPDX-License-Identifier: GPL-3.0-or-later
// How a conversation with a virtual controller went, as JSON.

#pragma once

#include "VirtualController.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace wqv
{

/** Keeps the steps that the controller tells of, and writes them with all else that it knows at the end. */
class ControllerReport
{
public:
    void addStep (const std::string& text);

    /** @returns what went wrong, for people; empty on success */
    [[nodiscard]] std::string write (const VirtualController& controller, const std::filesystem::path& file) const;

private:
    using Clock = std::chrono::steady_clock;

    const Clock::time_point start = Clock::now();
    std::vector<std::pair<std::chrono::milliseconds, std::string>> steps;
};

} // namespace wqv
