// SPDX-License-Identifier: GPL-3.0-or-later
// The parser of the text resources: lines, section markers, quotes and escapes.

#include "TextResource.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace wqv
{
namespace
{

constexpr std::size_t longestLine = 2047;
constexpr std::string_view endMarker = "EOF";

constexpr std::array<std::pair<std::string_view, FlgTable>, 4> markers { {
    { "FONT_WIN", FLG_FONT_WIN },
    { "FONT_MAC", FLG_FONT_MAC },
    { "LANG", FLG_LANG },
    { "STR", FLG_STR },
} };

bool contains (std::string_view text, std::string_view word)
{
    return text.find (word) != std::string_view::npos;
}

FlgTable sectionOf (std::string_view marker)
{
    const auto* const found =
        std::ranges::find_if (markers, [&] (const auto& m) { return contains (marker, m.first); });
    return found != markers.end() ? found->second : FLG_NONE;
}

/** The byte that an escape stands for; zero for what is no escape. */
char escaped (char letter)
{
    switch (letter)
    {
        case '"': return '"';
        case '\\': return '\\';
        case 'n': return '\n';
        case 't': return '\t';
        case 'r': return '\r';
        default: return 0;
    }
}

} // namespace

TextResource::TextResource (std::string_view bytes, FlgTable sectionWanted) : rest (bytes), wanted (sectionWanted) {}

bool TextResource::next (std::string& value)
{
    while (! rest.empty())
    {
        const auto line = nextLine();

        if (line.empty() || line.front() == '\r' || line.front() == '\n' || line.front() == '#')
            continue;

        if (line.front() == ':')
        {
            if (contains (line, endMarker))
                rest = {};

            current = sectionOf (line);
            continue;
        }

        if (current == wanted && wanted != FLG_NONE)
        {
            value = Read (line);
            return true;
        }
    }

    return false;
}

/** Cuts off the next line. If both a CR and an LF follow, the line ends before the later one, and the byte before that is
    dropped too: in a file with CR LF throughout, the CR. A zero byte ends a line as well. */
std::string_view TextResource::nextLine()
{
    const auto text = rest.substr (0, rest.find ('\0'));
    const auto carriageReturn = text.find ('\r');
    const auto lineFeed = text.find ('\n');
    const auto hasBoth = std::max (carriageReturn, lineFeed) != std::string_view::npos;
    const auto end =
        hasBoth ? std::max (carriageReturn, lineFeed) : std::min ({ carriageReturn, lineFeed, text.size() });

    rest.remove_prefix (std::min (end + 1, rest.size()));
    return text.substr (0, std::min (hasBoth ? end - 1 : end, longestLine));
}

std::string TextResource::Read (std::string_view line)
{
    std::string value;
    const auto opening = line.find ('"');

    if (opening == std::string_view::npos)
        return value;

    for (auto i = opening + 1; i < line.size() && line[i] != '"'; ++i)
    {
        const auto meaning = line[i] == '\\' && i + 1 < line.size() ? escaped (line[i + 1]) : char { 0 };

        value += meaning != 0 ? meaning : line[i];
        i += meaning != 0 ? 1 : 0;
    }

    return value;
}

} // namespace wqv
