// SPDX-License-Identifier: GPL-3.0-or-later
// The lines of a trace: written, and read again. docs/trace-format.md has the format.

#pragma once

#include "HidService.h"

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wqv
{

/** One line of a trace. */
struct TraceLine
{
    enum class Kind
    {
        attached, ///< device
        removed,  ///< device.id
        opened,   ///< device.id, result
        sent,     ///< bytes, to the device that was opened last
        notTaken, ///< the system did not take what was sent last
        received  ///< bytes, from the device that was opened last
    };

    std::chrono::microseconds time {}; ///< since the trace began
    Kind kind = Kind::attached;
    HidDevice device {};
    HidService::OpenResult result = HidService::OpenResult::ok;
    std::vector<std::uint8_t> bytes {};
};

/** What a trace begins with: a comment, with the version of the format. */
inline constexpr std::string_view traceFirstLine = "# wqv-trace 1";

/** A line without its end. */
[[nodiscard]] std::string formatTraceLine (const TraceLine& line);

/** Reads a line without its end; nothing for one that is no such line. */
[[nodiscard]] std::optional<TraceLine> parseTraceLine (std::string_view text);

/** Reads a whole trace, with line ends of any system; empty lines and comments are passed over.
    @param badLine  the number of the first line that makes no sense, counted from 1, be it missing; 0 for none
    @returns the lines before that one */
[[nodiscard]] std::vector<TraceLine> readTrace (std::istream& stream, std::size_t& badLine);

/** Writes a trace, each line at once, so that a process that dies leaves a whole one behind. Any thread. */
class TraceWriter
{
public:
    /** Begins the trace. @param streamToUse  outlives this object */
    explicit TraceWriter (std::ostream& streamToUse);

    /** Writes a line with the time of now. */
    void write (TraceLine line);

private:
    using Clock = std::chrono::steady_clock; // goes on steadily, whatever is done to the time of day

    std::mutex lock; ///< so that times only ever rise from line to line
    std::ostream& stream;
    const Clock::time_point begin = Clock::now();
};

} // namespace wqv
