// SPDX-License-Identifier: GPL-3.0-or-later
// The parser of the embedded text resources.

#pragma once

#include "FlgTable.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace wqv
{

/** Reads the quoted values of one section of a text resource, in the order of their lines.

    Lines end at CR LF; those that begin with '#' and empty ones are passed over. A line that begins with ':' opens the
    section that it names or, naming none, a section that nobody asks for; ":EOF" ends the resource. Every other line
    holds a value between double quotes, UTF-8, with the escapes \" \\ \n \t \r.

    Total: any bytes give values or none. A line counts up to its 2047th byte; one without a quote gives an empty value.
*/
class TextResource
{
public:
    /** @param bytes  stay where they are while this object lives */
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
