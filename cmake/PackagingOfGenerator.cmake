# SPDX-License-Identifier: GPL-3.0-or-later
# CPack reads this for each kind of package: the tarball has its own folder plan.

if (CPACK_GENERATOR STREQUAL "TGZ")
    list (GET CPACK_INSTALL_CMAKE_PROJECTS 0 build)
    list (GET CPACK_INSTALL_CMAKE_PROJECTS 1 project)
    set (CPACK_INSTALL_CMAKE_PROJECTS "${build};${project};tarball;/")
endif()
