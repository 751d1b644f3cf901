# SPDX-License-Identifier: GPL-3.0-or-later
# How our own code is compiled: C++20, with warnings, and the sanitizers that a preset asks for. Where we look for warnings,
# in the presets for development and in script/test, CMAKE_COMPILE_WARNING_AS_ERROR makes errors of them; elsewhere a newer
# compiler may have new ones.

set (CMAKE_CXX_STANDARD 20)
set (CMAKE_CXX_STANDARD_REQUIRED ON)
set (CMAKE_CXX_EXTENSIONS OFF)
set (CMAKE_OBJCXX_STANDARD 20)
set (CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set (CMAKE_POSITION_INDEPENDENT_CODE ON)

set (WQV_SANITIZERS "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them (address,undefined or thread)")

if (WQV_SANITIZERS)
    add_compile_options (-fsanitize=${WQV_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options (-fsanitize=${WQV_SANITIZERS})
endif()

# Windows 10 is the oldest; texts for the system are UTF-16.
if (WIN32)
    add_compile_definitions (_WIN32_WINNT=0x0A00 UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN)
endif()

# The settings of every target of ours; JUCE's modules do not link to it. Without -Wrestrict, which g++ 12 alone reports
# for "text" + std::string where nothing overlaps.
add_library (wqv_settings INTERFACE)

if (MSVC)
    target_compile_options (wqv_settings INTERFACE /W4 /permissive- /utf-8 /Zc:__cplusplus)
else()
    target_compile_options (wqv_settings INTERFACE
        -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wcast-qual -Wcast-align
        -Wnon-virtual-dtor -Woverloaded-virtual -Wdouble-promotion -Wformat=2 -Wno-format-nonliteral
        -Wundef -Wunused $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
endif()

# A static library that is one layer: its folder is its include root, and only what it links can be included.
#   wqv_add_layer (NAME SOURCES file ... [PUBLIC target ...] [PRIVATE target ...])
# PUBLIC names the layers whose types stand in this layer's own headers.
function (wqv_add_layer name)
    cmake_parse_arguments (PARSE_ARGV 1 LAYER "" "" "SOURCES;PUBLIC;PRIVATE")

    add_library (${name} STATIC ${LAYER_SOURCES})
    target_include_directories (${name} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries (${name} PUBLIC ${LAYER_PUBLIC} PRIVATE ${LAYER_PRIVATE} wqv_settings)
endfunction()
