# SPDX-License-Identifier: GPL-3.0-or-later
# The toolkit's modules, compiled once as two static libraries: the engine may see only wqv_juce_events, and the window
# wqv_juce_gui too. Each has an include root of its own that links to just its modules.

find_package (JUCE 7.0.5 EXACT CONFIG REQUIRED)
find_package (Threads REQUIRED)
find_package (ZLIB REQUIRED)

set (WQV_JUCE_DEFINITIONS
    JUCE_GLOBAL_MODULE_SETTINGS_INCLUDED=1
    JUCE_STANDALONE_APPLICATION=1
    JUCE_DISPLAY_SPLASH_SCREEN=0
    JUCE_REPORT_APP_USAGE=0
    JUCE_USE_CURL=0
    JUCE_WEB_BROWSER=0
    $<IF:$<CONFIG:Debug>,DEBUG=1,NDEBUG=1>)

#   wqv_add_juce_library (NAME MODULES module ... [LIBRARIES library ...])
function (wqv_add_juce_library name)
    cmake_parse_arguments (PARSE_ARGV 1 JUCE_LIBRARY "" "" "MODULES;LIBRARIES")

    set (root "${CMAKE_BINARY_DIR}/include/${name}")
    file (MAKE_DIRECTORY "${root}")
    add_library (${name} STATIC)

    foreach (module IN LISTS JUCE_LIBRARY_MODULES)
        file (CREATE_LINK "${JUCE_MODULES_DIR}/${module}" "${root}/${module}" SYMBOLIC)
        target_sources (${name} PRIVATE "${root}/${module}/${module}.cpp")
        target_compile_definitions (${name} PUBLIC JUCE_MODULE_AVAILABLE_${module}=1)
    endforeach()

    target_include_directories (${name} SYSTEM PUBLIC "${root}")
    target_compile_definitions (${name} PUBLIC ${WQV_JUCE_DEFINITIONS})
    target_compile_options (${name} PRIVATE -w)
    target_link_libraries (${name} PUBLIC ${JUCE_LIBRARY_LIBRARIES})
endfunction()

wqv_add_juce_library (wqv_juce_events
    MODULES juce_core juce_events
    LIBRARIES Threads::Threads ZLIB::ZLIB ${CMAKE_DL_LIBS} rt)

if (WQV_WINDOW)
    # Debian's toolkit leaves its copies of these out.
    find_package (Freetype REQUIRED)
    find_package (JPEG REQUIRED)
    find_package (PNG REQUIRED)

    wqv_add_juce_library (wqv_juce_gui
        MODULES juce_data_structures juce_graphics juce_gui_basics
        LIBRARIES wqv_juce_events Freetype::Freetype JPEG::JPEG PNG::PNG)

    # The toolkit loads and unloads these by name. Kept to the end, the leak checker sees that what their globals hold is
    # not lost.
    if (WQV_SANITIZERS MATCHES "address")
        target_link_libraries (wqv_juce_gui PUBLIC
            "-Wl,--push-state,--no-as-needed" X11 Xcursor Xext Xinerama Xrandr Xrender "-Wl,--pop-state")
    endif()
endif()
