// SPDX-License-Identifier: GPL-3.0-or-later
// A handler that writes down what it hears of the controller.

#pragma once

#include "HidHandler.h"

#include <string>
#include <utility>

namespace wqv
{

/** Writes down what it hears: m(atching), r(emoval), i(nput). */
struct NotingHandler final : HidHandler
{
    void matchingCallBack() override { heard += 'm'; }
    void removalCallBack() override { heard += 'r'; }
    void inputCallBack() override { heard += 'i'; }

    /** What was heard since the last call. */
    [[nodiscard]] std::string news() { return std::exchange (heard, {}); }

    std::string heard;
};

} // namespace wqv
