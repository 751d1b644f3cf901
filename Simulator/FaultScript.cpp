// SPDX-License-Identifier: GPL-3.0-or-later
// Parsing fault scripts, as in "silent@40,wrong@7:0xF8".

#include "FaultScript.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <utility>

namespace wqv
{
namespace
{

constexpr std::array<std::pair<std::string_view, Fault::Kind>, 12> kinds { {
    { "silent", Fault::Kind::silent },
    { "late", Fault::Kind::late },
    { "busy", Fault::Kind::busy },
    { "burst", Fault::Kind::burst },
    { "wrong", Fault::Kind::wrong },
    { "brief", Fault::Kind::brief },
    { "refuse", Fault::Kind::refuse },
    { "notYet", Fault::Kind::notYet },
    { "unplug", Fault::Kind::unplug },
    { "leave", Fault::Kind::leave },
    { "replug", Fault::Kind::replug },
    { "hold", Fault::Kind::hold },
} };

/** Cuts the text up to a separator off its front. */
std::string_view takeUntil (std::string_view& text, char separator)
{
    const auto end = std::min (text.find (separator), text.size());
    const auto taken = text.substr (0, end);

    text.remove_prefix (std::min (end + 1, text.size()));
    return taken;
}

template <typename Number>
bool readNumber (std::string_view text, Number& number)
{
    const auto isHex = text.starts_with ("0x");
    const auto digits = text.substr (isHex ? 2 : 0);
    const auto* end = digits.data() + digits.size();
    const auto result = std::from_chars (digits.data(), end, number, isHex ? 16 : 10);

    return result.ec == std::errc {} && result.ptr == end;
}

/** The largest value of a kind; nothing for one that has none. */
std::optional<std::uint32_t> largestValue (Fault::Kind kind)
{
    switch (kind)
    {
        case Fault::Kind::wrong: return 0xFF;

        case Fault::Kind::late:
        case Fault::Kind::busy:
        case Fault::Kind::burst:
        case Fault::Kind::replug: return std::numeric_limits<std::uint32_t>::max();

        default: return {};
    }
}

std::optional<Fault> parseFault (std::string_view text)
{
    const auto hasValue = text.find (':') != std::string_view::npos;
    auto place = takeUntil (text, ':');
    const auto name = takeUntil (place, '@');
    const auto hasRange = place.find ('-') != std::string_view::npos;
    const auto first = takeUntil (place, '-');
    const auto* const kind = std::ranges::find (kinds, name, &std::pair<std::string_view, Fault::Kind>::first);

    if (kind == kinds.end())
        return {};

    Fault fault { .kind = kind->second };

    const auto largest = largestValue (fault.kind);

    if (! readNumber (first, fault.first) || ! readNumber (hasRange ? place : first, fault.last)
        || hasValue != largest.has_value()
        || (hasValue && (! readNumber (text, fault.value) || fault.value > *largest)))
        return {};

    // Requests are counted from 1, and a range that ends before it begins holds none.
    if (fault.first == 0 || fault.last < fault.first)
        return {};

    return fault;
}

} // namespace

std::optional<FaultScript> parseFaultScript (std::string_view text)
{
    FaultScript script;

    while (! text.empty())
    {
        const auto fault = parseFault (takeUntil (text, ','));

        if (! fault)
            return {};

        script.push_back (*fault);
    }

    return script;
}

} // namespace wqv
