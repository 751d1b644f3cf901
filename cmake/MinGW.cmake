# SPDX-License-Identifier: GPL-3.0-or-later
# Toolchain file: compiles for Windows on Debian, by MinGW-w64. Libraries come from Debian's packages for MinGW and from
# build/windows-libraries, which "script/bootstrap windows" builds. What is built runs under Wine: tests, and tools that
# the build itself uses.

set (CMAKE_SYSTEM_NAME Windows)
set (CMAKE_SYSTEM_PROCESSOR x86_64)

# With POSIX threads, which C++'s own need.
set (CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set (CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set (CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set (CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../script/lib/wine")

get_filename_component (WQV_WINDOWS_LIBRARIES "${CMAKE_CURRENT_LIST_DIR}/../build/windows-libraries" ABSOLUTE)
set (CMAKE_FIND_ROOT_PATH "${WQV_WINDOWS_LIBRARIES}" /usr/x86_64-w64-mingw32)
set (CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set (CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set (CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set (CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Programs that need nothing but the system's own libraries.
set (CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--dynamicbase,--nxcompat,--high-entropy-va")

# JUCE's modules have more sections than a plain object file can hold.
set (CMAKE_CXX_FLAGS_INIT "-Wa,-mbig-obj")
