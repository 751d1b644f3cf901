# SPDX-License-Identifier: GPL-3.0-or-later
# Files as constants in the program. Of name.ext, name_ext is the span of its bytes; name_ext_array has one zero byte behind
# them. name_ext_length and name_ext_pointer are what the span is made of.

if (CMAKE_SCRIPT_MODE_FILE)
    # Runs at build time:  cmake -D FILES=file;... -D OUTPUT=path -P EmbedFile.cmake  writes path.h and path.cpp.
    get_filename_component (output_name "${OUTPUT}" NAME)
    set (declarations "")
    set (definitions "")

    foreach (file IN LISTS FILES)
        get_filename_component (file_name "${file}" NAME)
        string (MAKE_C_IDENTIFIER "${file_name}" name)
        file (SIZE "${file}" length)
        file (READ "${file}" bytes HEX)
        string (REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
        string (REGEX REPLACE "(.....................................................................................)" "\\1\n" bytes "${bytes}")

        string (APPEND declarations "
// ${file_name}
extern const std::uint8_t ${name}_array[];
inline constexpr std::int32_t ${name}_length = ${length};
inline constexpr const std::uint8_t* ${name}_pointer = ${name}_array;
inline constexpr std::span<const std::uint8_t> ${name} { ${name}_pointer, ${name}_length };
")
        string (APPEND definitions "
const std::uint8_t ${name}_array[] = {
${bytes}0x00
};
")
    endforeach()

    file (WRITE "${OUTPUT}.h"
"// Made by EmbedFile.cmake.

#pragma once

#include <cstdint>
#include <span>

namespace wqv
{
${declarations}
} // namespace wqv
")
    file (WRITE "${OUTPUT}.cpp"
"// Made by EmbedFile.cmake.

#include \"${output_name}.h\"

namespace wqv
{
${definitions}
} // namespace wqv
")
    return()
endif()

set (WQV_EMBED_FILE_SCRIPT "${CMAKE_CURRENT_LIST_FILE}")

# A static library of embedded files, and the header that declares them, EmbeddedFiles.h. The folder is an include root too.
#   wqv_embed_files (NAME file ...)
function (wqv_embed_files name)
    set (files "")

    foreach (file IN LISTS ARGN)
        get_filename_component (file "${file}" ABSOLUTE)
        list (APPEND files "${file}")
    endforeach()

    set (output "${CMAKE_CURRENT_BINARY_DIR}/EmbeddedFiles")
    add_custom_command (OUTPUT "${output}.h" "${output}.cpp"
        COMMAND "${CMAKE_COMMAND}" -D "FILES=${files}" -D "OUTPUT=${output}" -P "${WQV_EMBED_FILE_SCRIPT}"
        DEPENDS ${files} "${WQV_EMBED_FILE_SCRIPT}"
        COMMENT "Embedding files"
        VERBATIM)

    wqv_add_layer (${name} SOURCES "${output}.cpp" "${output}.h")
    target_include_directories (${name} PUBLIC "${CMAKE_CURRENT_BINARY_DIR}")
endfunction()
