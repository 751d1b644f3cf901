// SPDX-License-Identifier: GPL-3.0-or-later
// The format of the text resources: their sections, and the parser.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace wqv
{

/** A section of a text resource, opened by the marker that the comment names. */
enum FlgTable : std::int32_t
{
    FLG_NONE = 0,     ///< before the first marker, and after an unknown one
    FLG_FONT_WIN = 1, ///< ":FONT_WIN"
    FLG_FONT_MAC = 2, ///< ":FONT_MAC"
    FLG_LANG = 3,     ///< ":LANG"
    FLG_STR = 4       ///< ":STR"
};

/** Reads the quoted values of one section of a text resource, in the order of their lines.

    Lines end at CR LF; those that begin with '#' and empty ones are passed over. A line that begins with ':' opens the
    section that it names or, naming none, a section that nobody asks for; ":EOF" ends the resource. Every other line
    holds a value between double quotes, UTF-8, with the escapes \" \\ \n \t \r.

    Total: any bytes give values or none. A line counts up to its 2047th byte; one without a quote gives an empty value.
*/
class TextResource
{
public:
    /** @param bytes          stay where they are while this object lives
        @param sectionWanted  FLG_NONE has no values */
    TextResource (std::string_view bytes, FlgTable sectionWanted);

    /** Reads the next value of the section.
        @returns false when there is none */
    [[nodiscard]] bool next (std::string& value);

    /** The decoded value of one content line. */
    [[nodiscard]] static std::string Read (std::string_view line);

private:
    [[nodiscard]] std::string_view nextLine();

    std::string_view rest;
    FlgTable wanted;
    FlgTable current = FLG_NONE;
};

} // namespace wqv
