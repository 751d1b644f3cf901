// SPDX-License-Identifier: GPL-3.0-or-later
// Parses --version and --block, strictly: a wrong package would be noticed only at the controller.

#include "BlockOption.h"

#include "Utf8Path.h"

#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <set>

namespace wqv
{
namespace
{

std::string quoted (std::string_view text)
{
    return std::string (1, '\'').append (text).append (1, '\'');
}

template <typename Number>
std::optional<Number> parseNumber (std::string_view text, int base)
{
    Number number {};
    const auto end = text.data() + text.size();
    const auto [stop, error] = std::from_chars (text.data(), end, number, base);

    if (error != std::errc() || stop != end)
        return {};

    return number;
}

/** Decimal, or hexadecimal after 0x. */
template <typename Number>
std::optional<Number> parseNumber (std::string_view text)
{
    return text.starts_with ("0x") || text.starts_with ("0X") ? parseNumber<Number> (text.substr (2), 16)
                                                              : parseNumber<Number> (text, 10);
}

template <typename Number>
std::string parseInto (Number& field, std::string_view key, std::string_view text)
{
    const auto number = parseNumber<Number> (text);

    if (! number)
        return std::string (key) + " " + quoted (text) + " is not a number from 0 to "
               + std::to_string (std::numeric_limits<Number>::max());

    field = *number;
    return {};
}

std::string parseId (BlockDescription& block, std::string_view text)
{
    const auto id = text.size() == 4 ? parseNumber<std::uint16_t> (text, 16) : std::nullopt;

    if (! id)
        return "id " + quoted (text) + " is not four hexadecimal digits";

    block.id = *id;
    return {};
}

std::string parsePart (std::string_view part, BlockOption& value)
{
    const auto equals = part.find ('=');
    const auto key = part.substr (0, equals);
    const auto hasText = equals != std::string_view::npos;
    const auto text = hasText ? part.substr (equals + 1) : std::string_view();

    if (key == "id" && hasText)
        return parseId (value.block, text);

    if (key == "seed" && hasText)
        return parseInto (value.block.seed, key, text);

    if (key == "key-index" && hasText)
        return parseInto (value.block.keyIndex, key, text);

    if (key == "file" && ! text.empty())
        value.file = pathFromUtf8 (text);
    else if (part == "disabled")
        value.block.enabled = false;
    else if (part == "scramble")
        value.block.scramble = true;
    else
        return quoted (part) + " is none of id=DIGITS, file=NAME, disabled, scramble, seed=NUMBER, key-index=NUMBER";

    return {};
}

} // namespace

std::string parseBlockOption (std::string_view text, BlockOption& value)
{
    std::set<std::string_view> seen;

    for (auto rest = text; rest.data() != nullptr;)
    {
        const auto comma = rest.find (',');
        const auto part = rest.substr (0, comma);
        rest = comma == std::string_view::npos ? std::string_view() : rest.substr (comma + 1);

        if (auto problem = parsePart (part, value); ! problem.empty())
            return problem;

        if (const auto key = part.substr (0, part.find ('=')); ! seen.insert (key).second)
            return std::string (key) + " is given twice";
    }

    for (const auto* needed : { "id", "file" })
        if (! seen.contains (needed))
            return std::string (needed) + "= is missing";

    return {};
}

std::string parseVersion (std::string_view text, unsigned& value)
{
    const auto point = text.find ('.');
    const auto major = parseNumber<unsigned> (text.substr (0, point), 10);
    const auto fraction = point == std::string_view::npos ? "" : text.substr (point + 1);
    const auto hundredths = fraction.size() == 2 ? parseNumber<unsigned> (fraction, 10) : std::nullopt;

    if (! major || ! hundredths)
        return quoted (text) + " is not a version such as 1.05";

    // A number too large for the arithmetic is beyond the limit all the same.
    value = *major > maximumVersion ? maximumVersion + 1 : 100 * *major + *hundredths;
    return {};
}

} // namespace wqv
