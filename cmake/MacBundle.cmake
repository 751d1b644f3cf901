# SPDX-License-Identifier: GPL-3.0-or-later
# The application bundle of macOS: WQVUpdateProgram.app, with the update beside the executable in Contents/MacOS. It is signed
# afterwards; docs/releasing.md has the commands.

set (WQV_BUNDLE_ID "org.example.wqv-krv20-updater" CACHE STRING
    "The program's name for macOS: a domain of the maker, reversed, and a name in it")
set (WQV_UPDATE_PACKAGE "" CACHE FILEPATH "The firmware update to put into the bundle; none: the program alone")

set (icon "${PROJECT_SOURCE_DIR}/packaging/mac/wqv-krv20-updater.icns")
target_sources (WQVUpdateProgram PRIVATE "${icon}")
set_source_files_properties ("${icon}" TARGET_DIRECTORY WQVUpdateProgram PROPERTIES MACOSX_PACKAGE_LOCATION Resources)

set_target_properties (WQVUpdateProgram PROPERTIES
    MACOSX_BUNDLE ON
    MACOSX_BUNDLE_INFO_PLIST "${PROJECT_SOURCE_DIR}/packaging/mac/Info.plist.in")

# An update that the program would refuse is not shipped.
if (WQV_UPDATE_PACKAGE)
    add_custom_target (update_in_bundle ALL
        COMMAND wqv-package verify "${WQV_UPDATE_PACKAGE}"
        COMMAND "${CMAKE_COMMAND}" -E copy "${WQV_UPDATE_PACKAGE}" "$<TARGET_FILE_DIR:WQVUpdateProgram>/WQV-KRV20_UP.upd"
        VERBATIM)
    add_dependencies (update_in_bundle WQVUpdateProgram)
else()
    message (STATUS "The bundle holds the program alone: WQV_UPDATE_PACKAGE names no firmware update")
endif()
