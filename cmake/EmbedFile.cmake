# SPDX-License-Identifier: GPL-3.0-or-later
# Files as constants in the program: name.ext becomes name_ext_array, with one zero byte after the file's own, the length
# name_ext_length without that byte, and name_ext_pointer.

if (CMAKE_SCRIPT_MODE_FILE)
    # Runs at build time:  cmake -D INPUT=file -D OUTPUT=file.cpp -P EmbedFile.cmake
    get_filename_component (file_name "${INPUT}" NAME)
    string (MAKE_C_IDENTIFIER "${file_name}" name)
    file (SIZE "${INPUT}" length)
    file (READ "${INPUT}" bytes HEX)
    string (REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
    string (REGEX REPLACE "(.....................................................................................)" "\\1\n" bytes "${bytes}")

    file (WRITE "${OUTPUT}"
"// Made from ${file_name} by EmbedFile.cmake.

#include \"Binary.h\"

namespace wqv
{

const std::uint8_t ${name}_array[] = {
${bytes}0x00
};

const std::int32_t ${name}_length = ${length};
const std::uint8_t* const ${name}_pointer = ${name}_array;

} // namespace wqv
")
    return()
endif()

set (WQV_EMBED_FILE_SCRIPT "${CMAKE_CURRENT_LIST_FILE}")

# Compiles files into a target, which declares their constants in its Binary.h.
function (wqv_embed_files target)
    foreach (file IN LISTS ARGN)
        get_filename_component (input "${file}" ABSOLUTE)
        get_filename_component (file_name "${file}" NAME)
        set (output "${CMAKE_CURRENT_BINARY_DIR}/${file_name}.cpp")

        add_custom_command (OUTPUT "${output}"
            COMMAND "${CMAKE_COMMAND}" -D "INPUT=${input}" -D "OUTPUT=${output}" -P "${WQV_EMBED_FILE_SCRIPT}"
            DEPENDS "${input}" "${WQV_EMBED_FILE_SCRIPT}"
            COMMENT "Embedding ${file_name}"
            VERBATIM)
        target_sources (${target} PRIVATE "${output}")
    endforeach()
endfunction()
