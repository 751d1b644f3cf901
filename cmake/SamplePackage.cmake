# SPDX-License-Identifier: GPL-3.0-or-later
# A sample update package, made when the program is built: for the demo and for tests. Its firmware is none: run as a
# script, this file writes text that looks like data, always the same.

if (CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
    # cmake -D SIZE=bytes -D OUTPUT=file -P SamplePackage.cmake
    set (data "")
    set (length 0)

    while (length LESS SIZE)
        string (SHA512 line "${SIZE} ${length}")
        string (APPEND data "${line}")
        string (LENGTH "${data}" length)
    endwhile()

    string (SUBSTRING "${data}" 0 ${SIZE} data)
    file (WRITE "${OUTPUT}" "${data}")
    return()
endif()

# Adds the target TARGET, which makes OUTPUT_DIRECTORY/WQV-KRV20_UP.upd, its property WQV_FILE: version 1.05 with three blocks, the first
# plain, the second not to be written, the third scrambled.
#   wqv_add_sample_package (TARGET OUTPUT_DIRECTORY)
function (wqv_add_sample_package target outputDirectory)
    set (package "${outputDirectory}/WQV-KRV20_UP.upd")
    set (script "${CMAKE_CURRENT_FUNCTION_LIST_FILE}")
    set (blocks "")

    foreach (size IN ITEMS 24000 5000 17003)
        set (block "${CMAKE_CURRENT_BINARY_DIR}/${target}-${size}.bin")
        list (APPEND blocks "${block}")

        add_custom_command (
            OUTPUT "${block}"
            COMMAND "${CMAKE_COMMAND}" -D SIZE=${size} -D "OUTPUT=${block}" -P "${script}"
            DEPENDS "${script}"
            VERBATIM)
    endforeach()

    list (GET blocks 0 plain)
    list (GET blocks 1 disabled)
    list (GET blocks 2 scrambled)

    add_custom_command (
        OUTPUT "${package}"
        COMMAND "${CMAKE_COMMAND}" -E make_directory "${outputDirectory}"
        COMMAND wqv-package create --version 1.05
                --block "id=0001,file=${plain}"
                --block "id=0002,file=${disabled},disabled"
                --block "id=0003,file=${scrambled},scramble,seed=0x5EED1234,key-index=77"
                --output "${package}"
        DEPENDS wqv-package ${blocks}
        COMMENT "Making the sample update package"
        VERBATIM)

    add_custom_target (${target} DEPENDS "${package}")
    set_target_properties (${target} PROPERTIES WQV_FILE "${package}")
endfunction()
