# SPDX-License-Identifier: GPL-3.0-or-later
# What Windows shows of a program, its icon and version, and the manifest by which it runs it.

set (WQV_PUBLISHER "WQVUpdateProgram maintainers" CACHE STRING "Who answers for the program, as Windows shows it")

#   wqv_add_resources (TARGET DESCRIPTION [ICON file])
function (wqv_add_resources name WQV_FILE_DESCRIPTION)
    cmake_parse_arguments (PARSE_ARGV 2 RESOURCES "" "ICON" "")

    string (REPLACE "." "," WQV_VERSION_NUMBERS "${PROJECT_VERSION}")
    set (WQV_ICON_LINE "")

    if (RESOURCES_ICON)
        set (WQV_ICON_LINE "1 ICON \"${RESOURCES_ICON}\"")
    endif()

    set (resources "${CMAKE_CURRENT_BINARY_DIR}/${name}.rc")
    configure_file ("${PROJECT_SOURCE_DIR}/packaging/windows/resources.rc.in" "${resources}" @ONLY)
    target_sources (${name} PRIVATE "${resources}")
    set_source_files_properties ("${resources}" TARGET_DIRECTORY ${name} PROPERTIES
        OBJECT_DEPENDS "${PROJECT_SOURCE_DIR}/packaging/windows/application.manifest;${RESOURCES_ICON}")

    # The manifest is that one, not the linker's own.
    if (MSVC)
        target_link_options (${name} PRIVATE /MANIFEST:NO)
    endif()
endfunction()

set (WQV_ICON "${PROJECT_SOURCE_DIR}/packaging/windows/wqv-krv20-updater.ico")
wqv_add_resources (wqv-package "Makes and checks firmware updates of the WQV-KRV20")
wqv_add_resources (wqv-update "Updates the firmware of the WQV-KRV20 in a terminal")

# Programs with a window have no console, but begin with main() as all do.
if (WQV_WINDOW)
    foreach (name IN ITEMS WQVUpdateProgram WQVUpdateProgramDemo)
        wqv_add_resources (${name} "Firmware updater for the WQV-KRV20" ICON "${WQV_ICON}")
    endforeach()

    set_target_properties (WQVUpdateProgram PROPERTIES WIN32_EXECUTABLE ON)

    if (MSVC)
        target_link_options (WQVUpdateProgram PRIVATE /ENTRY:mainCRTStartup)
    endif()
endif()
