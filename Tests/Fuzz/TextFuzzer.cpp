// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzzes the parser of the text resources: with any bytes as a resource, and as a value in one.

#include "Fuzz.h"
#include "TextResource.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace wqv
{
namespace
{

constexpr std::size_t longestLine = 2047;

std::vector<std::string> valuesOf (std::string_view resource, FlgTable section)
{
    TextResource reader (resource, section);
    std::vector<std::string> values;

    for (std::string value; reader.next (value);)
        values.push_back (value);

    return values;
}

/** As a resource, with and without a comment before it.
    @param resource  ends where its memory ends, so that a read beyond it is seen */
void parse (std::string_view resource)
{
    const auto withComment = "# a comment\r\n" + std::string (resource);
    const auto lines = 1 + std::ranges::count_if (resource, [] (char c) { return c == '\r' || c == '\n' || c == 0; });
    std::size_t count = 0;

    for (const auto section : { FLG_NONE, FLG_FONT_WIN, FLG_FONT_MAC, FLG_LANG, FLG_STR })
    {
        const auto values = valuesOf (resource, section);
        count += values.size();

        for (const auto& value : values)
            expect (value.size() < longestLine, "a value is shorter than the longest line");

        expect (section != FLG_NONE || values.empty(), "what is in no section has no values");
        expect (section != FLG_STR || valuesOf (withComment, section) == values, "a comment changes nothing");
    }

    expect (count <= static_cast<std::size_t> (lines), "no line has two values");
}

/** As a value, written with escapes where it needs them: it is read as it was, up to the end of the longest line. */
void roundTrip (std::string value)
{
    std::erase (value, '\0');
    value.resize (std::min (value.size(), longestLine / 2 - 1)); // if every byte is an escape

    std::string line { '"' };

    for (const auto byte : value)
    {
        const auto escape = std::string_view ("\"\\\n\t\r").find (byte);
        line += escape == std::string_view::npos ? std::string { byte } : std::string { '\\', "\"\\ntr"[escape] };
    }

    line += '"';
    expect (valuesOf (":STR\r\n" + line + "\r\n:EOF\r\n\"no more\"\r\n", FLG_STR) == std::vector { value },
            "a value is read as it was written");

    line.pop_back();
    expect (valuesOf (":STR\r\n" + line + "\r\n", FLG_STR) == std::vector { value },
            "a value without an end ends with its line");
}

} // namespace
} // namespace wqv

int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    const std::string_view text (reinterpret_cast<const char*> (data), size);
    wqv::parse (text);
    wqv::roundTrip (std::string (text));
    return 0;
}
