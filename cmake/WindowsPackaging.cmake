# SPDX-License-Identifier: GPL-3.0-or-later
# What is shipped for Windows, as two components: the program, which the installer holds, and the tools for makers, which the
# folder to unpack holds too. script/package makes both.

set (WQV_UPDATE_PACKAGE "" CACHE FILEPATH "The firmware update to put into the packages; none: the program alone")
set (WQV_HOMEPAGE "https://example.org/" CACHE STRING "Where the list of programs sends people who want to know more")
set (WQV_PACKAGING "${CMAKE_BINARY_DIR}/packaging")

add_subdirectory (packaging)

set (CMAKE_INSTALL_DEFAULT_COMPONENT_NAME program)
install (TARGETS WQVUpdateProgram DESTINATION .)
install (FILES "${WQV_PACKAGING}/copyright" DESTINATION . RENAME copyright.txt)
install (FILES LICENSE DESTINATION . RENAME LICENSE.txt)

install (TARGETS wqv-package wqv-update DESTINATION . COMPONENT tools)
install (FILES "${WQV_PACKAGING}/readme.txt" DESTINATION . COMPONENT tools)

if (WQV_UPDATE_PACKAGE)
    install (FILES "${WQV_UPDATE_PACKAGE}" DESTINATION . RENAME WQV-KRV20_UP.upd)
endif()

# What the installer says of the program.
configure_file (packaging/windows/installer.nsh.in "${WQV_PACKAGING}/installer.nsh" @ONLY)
