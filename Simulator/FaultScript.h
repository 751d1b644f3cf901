// SPDX-License-Identifier: GPL-3.0-or-later
// How a virtual controller misbehaves: faults as data.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace wqv
{

/** One misbehaviour, at some of the requests that the controller receives, counted from 1 since it was made. */
struct Fault
{
    enum class Kind
    {
        silent, ///< no answer
        late,   ///< the answer comes value milliseconds later
        busy,   ///< value busy reports before the answer
        burst,  ///< value busy reports and the answer, all at once
        wrong,  ///< the answer has code value
        brief,  ///< the answer is one byte long
        refuse, ///< "enter update mode" is refused
        notYet, ///< "enter update mode" is put off
        unplug, ///< the controller goes away
        leave,  ///< the controller answers, then goes away
        replug, ///< the controller goes away and comes back value milliseconds later, as if just switched on
        hold    ///< the controller takes no report: the write waits until the system gives it up
    };

    Kind kind = Kind::silent;
    std::size_t first = 1;
    std::size_t last = 1;
    std::uint32_t value = 0;

    [[nodiscard]] bool concerns (std::size_t request) const { return first <= request && request <= last; }
};

using FaultScript = std::vector<Fault>;

/** Reads a script: faults separated by commas, each `kind@first[-last][:value]`, as in `notYet@1-3,unplug@40` or
    `wrong@7:0xF8`, with a value for those kinds that have one. Nothing for a text of another form. */
[[nodiscard]] std::optional<FaultScript> parseFaultScript (std::string_view text);

} // namespace wqv
