# SPDX-License-Identifier: GPL-3.0-or-later
# The shell in Objective-C++, run against doubles of the platform's classes: Clang compiles it anywhere.
set(quillo_shell_sources
    doubles/AppKit.mm
    doubles/AudioUnit.mm
    doubles/Foundation.mm
    "${PROJECT_SOURCE_DIR}/hosts/auv3/AudioUnitViewController.mm"
    "${PROJECT_SOURCE_DIR}/hosts/auv3/MIDIQuilloAUAudioUnit.mm"
    "${PROJECT_SOURCE_DIR}/hosts/auv3/MainThread.mm"
    "${PROJECT_SOURCE_DIR}/hosts/auv3/PresetPanels.mm"
    PresetPanelsTest.mm
    ShellTest.mm)
set_source_files_properties(${quillo_shell_sources} PROPERTIES
    LANGUAGE CXX
    COMPILE_OPTIONS
        "-xobjective-c++;-fobjc-runtime=objfw;-fconstant-string-class=NSConstantString;-fobjc-arc")

find_library(QUILLO_BLOCKS_RUNTIME BlocksRuntime)
if(NOT QUILLO_BLOCKS_RUNTIME)
    message(STATUS "libBlocksRuntime is not there: the tests of the macOS shell are left out")
    return()
endif()
quillo_add_tests(auv3-shell-tests REALTIME
    SOURCES
        EditorDouble.cpp
        doubles/ObjectiveCRuntime.cpp
        ${quillo_shell_sources}
    LINK quillo-auv3 "${QUILLO_BLOCKS_RUNTIME}")
if(TARGET auv3-shell-tests)
    target_compile_options(auv3-shell-tests PRIVATE -fblocks
        $<$<VERSION_GREATER_EQUAL:${CMAKE_CXX_COMPILER_VERSION},20>:-Wfunction-effects>)
    target_include_directories(auv3-shell-tests SYSTEM PRIVATE stubs)
    if(NOT QUILLO_SANITIZE)
        target_compile_options(auv3-shell-tests PRIVATE -fsanitize=address)
        target_link_options(auv3-shell-tests PRIVATE -fsanitize=address)
    endif()
endif()
