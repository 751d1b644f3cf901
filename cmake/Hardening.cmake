# SPDX-License-Identifier: GPL-3.0-or-later
# What keeps a fault in memory from becoming an attacker's way in: in every build but those with sanitizers, which find such
# faults by themselves, and for JUCE's modules too. A compiler gets what it takes of it; hardening.sh in script/lib reads from
# the programs for Linux that all of it is there.

include (CheckCXXCompilerFlag)
include (CheckCXXSourceCompiles)
include (CheckPIESupported)

# Without it CMake compiles position-independent programs, but links them as the compiler likes.
check_pie_supported (LANGUAGES CXX)

if (WQV_SANITIZERS)
    return()
endif()

# To the linker as well: that of MinGW takes the library of the stack protector by it.
set (flags -fstack-protector-strong)

if (CMAKE_SYSTEM_NAME STREQUAL "Linux")
    list (APPEND flags -fstack-clash-protection)

    # Clang takes either on any processor, but not without a word.
    if (CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)")
        list (APPEND flags -mbranch-protection=standard)
    else()
        list (APPEND flags -fcf-protection)
    endif()
endif()

foreach (flag IN LISTS flags)
    set (CMAKE_REQUIRED_LINK_OPTIONS ${flag})
    string (MAKE_C_IDENTIFIER "WQV_TAKES${flag}" takes)
    check_cxx_compiler_flag (${flag} ${takes})

    if (${takes})
        add_compile_options (${flag})
        add_link_options (${flag})
    endif()
endforeach()

unset (CMAKE_REQUIRED_LINK_OPTIONS)

if (CMAKE_SYSTEM_NAME STREQUAL "Linux")
    add_link_options (LINKER:-z,relro,-z,now,-z,noexecstack)

    # The library's own checks of sizes and places. The C library's take an optimising compiler, and their third level a recent
    # one. A distribution or the environment may have asked for another level before.
    set (optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
    set (CMAKE_REQUIRED_FLAGS "-O2 -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
    check_cxx_source_compiles ("
        #include <features.h>
        #if __USE_FORTIFY_LEVEL < 3
        #error
        #endif
        int main() {}" WQV_TAKES_FORTIFY_3)
    unset (CMAKE_REQUIRED_FLAGS)

    set (level $<IF:$<BOOL:${WQV_TAKES_FORTIFY_3}>,3,2>)
    add_compile_options ($<${optimised}:-U_FORTIFY_SOURCE> $<${optimised}:-D_FORTIFY_SOURCE=${level}>)
    add_compile_definitions (_GLIBCXX_ASSERTIONS)
elseif (MINGW)
    add_link_options (LINKER:--dynamicbase,--nxcompat,--high-entropy-va)
endif()
