// SPDX-License-Identifier: GPL-3.0-or-later
// Formats and parses the lines of a trace.

#include "Trace.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <istream>
#include <ostream>
#include <utility>

namespace wqv
{
namespace
{

using Kind = TraceLine::Kind;
using OpenResult = HidService::OpenResult;

constexpr std::array<std::pair<std::string_view, Kind>, 6> kindNames { { { "attached", Kind::attached },
                                                                         { "removed", Kind::removed },
                                                                         { "opened", Kind::opened },
                                                                         { ">", Kind::sent },
                                                                         { "!", Kind::notTaken },
                                                                         { "<", Kind::received } } };

constexpr std::array<std::pair<std::string_view, OpenResult>, 4> results { { { "ok", OpenResult::ok },
                                                                             { "denied", OpenResult::denied },
                                                                             { "in-use", OpenResult::inUse },
                                                                             { "gone", OpenResult::gone } } };

template <typename Table, typename Value>
std::string_view nameOf (const Table& table, Value value)
{
    return std::ranges::find (table, value, [] (const auto& entry) { return entry.second; })->first;
}

template <typename Table, typename Value>
bool findByName (const Table& table, std::string_view name, Value& value)
{
    const auto found = std::ranges::find (table, name, [] (const auto& entry) { return entry.first; });

    if (found == table.end())
        return false;

    value = found->second;
    return true;
}

/** Takes the next word off a text; empty when there is none. */
std::string_view nextWord (std::string_view& text)
{
    text.remove_prefix (std::min (text.find_first_not_of (' '), text.size()));
    const auto word = text.substr (0, text.find (' '));
    text.remove_prefix (word.size());
    return word;
}

template <typename Number>
bool parseNumber (std::string_view word, Number& number, int base)
{
    const auto* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars (word.data(), end, number, base);
    return error == std::errc() && stop == end;
}

bool parseTime (std::string_view word, std::chrono::microseconds& time)
{
    std::uint32_t seconds = 0;
    std::uint32_t fraction = 0;
    const auto point = word.find ('.');

    if (point == std::string_view::npos || word.size() != point + 7
        || ! parseNumber (word.substr (0, point), seconds, 10) || ! parseNumber (word.substr (point + 1), fraction, 10))
        return false;

    time = std::chrono::seconds (seconds) + std::chrono::microseconds (fraction);
    return true;
}

/** The fields of an attached device: name, where it goes, base. Calls @p field for each until one returns false. */
template <typename Device, typename Field>
bool forEachField (Device& device, Field&& field)
{
    return field ("vendor=", device.vendorId, 16) && field ("product=", device.productId, 16)
           && field ("version=", device.versionNumber, 16) && field ("location=", device.location, 16)
           && field ("interface=", device.interfaceNumber, 10) && field ("input=", device.inputReportLength, 10)
           && field ("output=", device.outputReportLength, 10);
}

bool parseDevice (std::string_view text, HidDevice& device)
{
    return forEachField (device,
                         [&text] (std::string_view name, auto& number, int base)
                         {
                             const auto word = nextWord (text);
                             return word.starts_with (name) && parseNumber (word.substr (name.size()), number, base);
                         });
}

std::string formatDevice (const HidDevice& device)
{
    std::string text;

    forEachField (device,
                  [&text] (std::string_view name, auto number, int base)
                  {
                      std::array<char, 24> digits {};
                      const auto* const format = base == 10 ? "%llu" : "%04llx";
                      std::snprintf (
                          digits.data(), digits.size(), format, static_cast<unsigned long long> (number)); // NOLINT
                      text.append (" ").append (name).append (digits.data());
                      return true;
                  });

    return text;
}

bool parseBytes (std::string_view text, std::vector<std::uint8_t>& bytes)
{
    for (auto word = nextWord (text); ! word.empty(); word = nextWord (text))
        if (word.size() != 2 || ! parseNumber (word, bytes.emplace_back(), 16))
            return false;

    return true;
}

} // namespace

std::string formatTraceLine (const TraceLine& line)
{
    std::array<char, 40> time {};
    std::snprintf (
        time.data(),
        time.size(),
        "%lld.%06lld ",
        static_cast<long long> (line.time.count() / 1000000),  // NOLINT (google-runtime-int): as printf has it
        static_cast<long long> (line.time.count() % 1000000)); // NOLINT (google-runtime-int)

    std::string text = time.data();
    text += nameOf (kindNames, line.kind);

    if (line.kind <= Kind::opened)
        text += " " + std::to_string (line.device.id);

    if (line.kind == Kind::attached)
        text += formatDevice (line.device);

    if (line.kind == Kind::opened)
        text.append (" ").append (nameOf (results, line.result));

    for (const auto byte : line.bytes)
    {
        constexpr std::string_view digits = "0123456789ABCDEF";
        text.append ({ ' ', digits[byte / 16], digits[byte % 16] });
    }

    return text;
}

std::optional<TraceLine> parseTraceLine (std::string_view text)
{
    TraceLine line;

    if (! parseTime (nextWord (text), line.time) || ! findByName (kindNames, nextWord (text), line.kind)
        || (line.kind <= Kind::opened && ! parseNumber (nextWord (text), line.device.id, 10)))
        return {};

    auto isRight = false;

    switch (line.kind)
    {
        case Kind::attached: isRight = parseDevice (text, line.device); break;
        case Kind::opened: isRight = findByName (results, nextWord (text), line.result); break;
        case Kind::removed:
        case Kind::notTaken: isRight = nextWord (text).empty(); break;
        case Kind::sent:
        case Kind::received: isRight = parseBytes (text, line.bytes); break;
    }

    return isRight ? std::optional (std::move (line)) : std::nullopt;
}

std::vector<TraceLine> readTrace (std::istream& stream, std::size_t& badLine)
{
    std::vector<TraceLine> trace;
    std::string text;
    badLine = 0;

    // A file without a line has a wrong first one.
    for (std::size_t number = 1; std::getline (stream, text) || number == 1; ++number)
    {
        if (text.ends_with ('\r'))
            text.pop_back();

        if (number == 1 ? text == traceFirstLine : text.empty() || text.front() == '#')
            continue;

        auto line = parseTraceLine (text);

        if (number == 1 || ! line)
        {
            badLine = number;
            break;
        }

        trace.push_back (std::move (*line));
    }

    return trace;
}

TraceWriter::TraceWriter (std::ostream& streamToUse) : stream (streamToUse)
{
    stream << traceFirstLine << '\n' << std::flush;
}

void TraceWriter::write (TraceLine line)
{
    const std::scoped_lock guard (lock);
    line.time = std::chrono::duration_cast<std::chrono::microseconds> (Clock::now() - begin);
    stream << formatTraceLine (line) + "\n" << std::flush;
}

} // namespace wqv
