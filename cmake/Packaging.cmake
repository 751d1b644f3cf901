# SPDX-License-Identifier: GPL-3.0-or-later
# What is installed, and the packages that CPack makes of it: a Debian package of the updater, one of the tools for makers, and a
# tarball that runs where it is unpacked.

set (WQV_UPDATE_PACKAGE "" CACHE FILEPATH "The firmware update to put into the packages; none: the program alone")
set (WQV_MAINTAINER "WQVUpdateProgram maintainers <maintainers@example.org>" CACHE STRING
    "Who answers for the packages: Name <mail address>")
set (WQV_HOMEPAGE "https://example.org/" CACHE STRING "Where software centres send people who want to know more")
set (WQV_COMPONENT_ID "org.example.wqv_krv20_updater" CACHE STRING
    "The program's name for software centres: a domain of the maker, reversed, and a name in it")
set (WQV_DEBIAN_REVISION "1" CACHE STRING "Revision of the Debian package, above the last one for the same version")

set (WQV_PACKAGE_NAME wqv-krv20-updater)
set (WQV_TOOLS_PACKAGE_NAME wqv-krv20-tools)
set (WQV_PROGRAM_FOLDER lib/${WQV_PACKAGE_NAME})
set (WQV_UPDATE_NAME WQV-KRV20_UP.upd)
set (WQV_PACKAGING "${CMAKE_BINARY_DIR}/packaging")

if (NOT WQV_UPDATE_PACKAGE)
    message (STATUS "Packages hold the program alone: WQV_UPDATE_PACKAGE names no firmware update")
elseif (EXISTS "${WQV_UPDATE_PACKAGE}")
    message (STATUS "Packages hold the firmware update ${WQV_UPDATE_PACKAGE}")
else()
    message (FATAL_ERROR "WQV_UPDATE_PACKAGE: there is no ${WQV_UPDATE_PACKAGE}")
endif()

add_subdirectory (packaging)

# The system's own folders, below the prefix (/usr in the Debian packages). The programs look for the update beside their file.
set (CMAKE_INSTALL_DEFAULT_COMPONENT_NAME updater)
set (notices "${WQV_PACKAGING}/copyright" "${WQV_PACKAGING}/changelog.gz" "${WQV_PACKAGING}/changelog.Debian.gz")

install (TARGETS WQVUpdateProgram DESTINATION ${WQV_PROGRAM_FOLDER})
install (FILES "${WQV_PACKAGING}/link/WQVUpdateProgram" DESTINATION bin)
install (FILES "${WQV_PACKAGING}/70-wqv-krv20.rules" DESTINATION lib/udev/rules.d)
install (FILES packaging/linux/${WQV_PACKAGE_NAME}.desktop DESTINATION share/applications)
install (FILES "${WQV_PACKAGING}/${WQV_COMPONENT_ID}.metainfo.xml" DESTINATION share/metainfo)
install (FILES "${WQV_PACKAGING}/WQVUpdateProgram.1.gz" DESTINATION share/man/man1)
install (FILES ${notices} DESTINATION share/doc/${WQV_PACKAGE_NAME})
install (FILES packaging/debian/lintian-overrides DESTINATION share/lintian/overrides RENAME ${WQV_PACKAGE_NAME})
install (FILES packaging/linux/icons/${WQV_PACKAGE_NAME}.svg DESTINATION share/icons/hicolor/scalable/apps)

install (TARGETS wqv-update DESTINATION ${WQV_PROGRAM_FOLDER} COMPONENT tools)
install (TARGETS wqv-package wqv-controller DESTINATION bin COMPONENT tools)
install (FILES "${WQV_PACKAGING}/link/wqv-update" DESTINATION bin COMPONENT tools)
install (FILES
    "${WQV_PACKAGING}/wqv-controller.1.gz" "${WQV_PACKAGING}/wqv-package.1.gz" "${WQV_PACKAGING}/wqv-update.1.gz"
    DESTINATION share/man/man1 COMPONENT tools)
install (FILES ${notices} DESTINATION share/doc/${WQV_TOOLS_PACKAGE_NAME} COMPONENT tools)
install (FILES packaging/debian/lintian-overrides-tools
    DESTINATION share/lintian/overrides RENAME ${WQV_TOOLS_PACKAGE_NAME} COMPONENT tools)

foreach (size IN ITEMS 48 128 256)
    install (FILES packaging/linux/icons/${WQV_PACKAGE_NAME}-${size}.png
        DESTINATION share/icons/hicolor/${size}x${size}/apps
        RENAME ${WQV_PACKAGE_NAME}.png)
endforeach()

# The tarball: one flat folder.
install (TARGETS WQVUpdateProgram wqv-package wqv-update wqv-controller DESTINATION . COMPONENT tarball EXCLUDE_FROM_ALL)
install (FILES "${WQV_PACKAGING}/70-wqv-krv20.rules" "${WQV_PACKAGING}/copyright" "${WQV_PACKAGING}/readme.txt" LICENSE
    DESTINATION . COMPONENT tarball EXCLUDE_FROM_ALL)

# Debian has the text of this licence on every system, others may not.
if (WQV_JUCE_VERSION VERSION_GREATER_EQUAL 8)
    install (FILES "${WQV_JUCE_MODULES}/juce_graphics/unicode/sheenbidi/LICENSE"
        DESTINATION . RENAME LICENSE.Apache-2.0 COMPONENT tarball EXCLUDE_FROM_ALL)
endif()

# An update that the program would refuse is not shipped.
if (WQV_UPDATE_PACKAGE)
    set (verify "execute_process (COMMAND \"$<TARGET_FILE:wqv-package>\" verify \"${WQV_UPDATE_PACKAGE}\"
                                  COMMAND_ERROR_IS_FATAL ANY)")

    install (CODE "${verify}")
    install (FILES "${WQV_UPDATE_PACKAGE}" DESTINATION ${WQV_PROGRAM_FOLDER} RENAME ${WQV_UPDATE_NAME})
    install (CODE "${verify}" COMPONENT tarball EXCLUDE_FROM_ALL)
    install (FILES "${WQV_UPDATE_PACKAGE}" DESTINATION . RENAME ${WQV_UPDATE_NAME} COMPONENT tarball EXCLUDE_FROM_ALL)
endif()

set (CPACK_GENERATOR "DEB;TGZ")
set (CPACK_PACKAGE_NAME ${WQV_PACKAGE_NAME})
set (CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set (CPACK_PACKAGE_FILE_NAME "${WQV_PACKAGE_NAME}-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR}")
set (CPACK_PACKAGE_DIRECTORY "${PROJECT_SOURCE_DIR}/build/packages")
set (CPACK_PACKAGE_CONTACT "${WQV_MAINTAINER}")
set (CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set (CPACK_STRIP_FILES ON)
set (CPACK_PROJECT_CONFIG_FILE "${PROJECT_SOURCE_DIR}/cmake/PackagingOfGenerator.cmake")
set (CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set (CPACK_COMPONENTS_ALL updater tools)
set (CPACK_DEB_COMPONENT_INSTALL ON)
set (CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set (CPACK_DEBIAN_PACKAGE_SOURCE ${WQV_PACKAGE_NAME})
set (CPACK_DEBIAN_PACKAGE_RELEASE "${WQV_DEBIAN_REVISION}")
set (CPACK_DEBIAN_PACKAGE_SECTION utils)

# What the programs link to is computed. JUCE loads these by name when it opens its window; without the first two it
# does not run. The last two keep the screen saver away and the machine awake during an update.
set (CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set (CPACK_DEBIAN_UPDATER_PACKAGE_NAME ${WQV_PACKAGE_NAME})
set (CPACK_DEBIAN_UPDATER_PACKAGE_DEPENDS
    "libx11-6, libxext6, libxcursor1, libxinerama1, libxrandr2, libxrender1, libxss1, libsystemd0")
set (CPACK_DEBIAN_UPDATER_PACKAGE_CONTROL_EXTRA
    "${PROJECT_SOURCE_DIR}/packaging/debian/postinst;${PROJECT_SOURCE_DIR}/packaging/debian/postrm")
set (CPACK_DEBIAN_UPDATER_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set (CPACK_DEBIAN_UPDATER_DESCRIPTION
"firmware updater for the WQV-KRV20 DJ controller
A small window that finds the controller on USB, shows its firmware version
and that of the update, and writes the update with a progress bar.")

# Without the updater the tools have neither its udev rule nor the firmware update.
set (CPACK_DEBIAN_TOOLS_PACKAGE_NAME ${WQV_TOOLS_PACKAGE_NAME})
set (CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS "${WQV_PACKAGE_NAME}, libsystemd0")
set (CPACK_DEBIAN_TOOLS_DESCRIPTION
"tools for makers and menders of the WQV-KRV20 DJ controller
wqv-update updates the firmware in a terminal, one controller or many, says
why an update failed, and records it. wqv-package makes, checks, shows and
takes apart firmware updates. wqv-controller makes a Linux board with a USB
device port a controller to test with.")

include (CPack)
