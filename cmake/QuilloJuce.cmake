# SPDX-License-Identifier: GPL-3.0-or-later
# quillo-juce: the modules of JUCE that the editor uses, compiled once. What links it includes
# <juce_gui_basics/juce_gui_basics.h> and compiles no module again.
# quillo-juce-audio: besides these the modules that plug-ins and their hosts use, compiled once as well:
# <juce_audio_processors/juce_audio_processors.h>.
# Without JUCE on the machine there are no such targets, and everything that needs no window is built all the
# same; nor are there any in the trees that look at the render thread only.

if(QUILLO_WITHOUT_LIBRARIES OR QUILLO_SANITIZE MATCHES "thread|realtime")
    return()
endif()
find_package(JUCE CONFIG QUIET)
# JUCE 7, which Debian has, does not compile against the SDKs of macOS 15 and later.
if(NOT JUCE_FOUND AND APPLE)
    include(FetchContent)
    FetchContent_Declare(JUCE
        GIT_REPOSITORY https://github.com/juce-framework/JUCE.git
        GIT_TAG 8.0.12
        GIT_SHALLOW ON)
    FetchContent_MakeAvailable(JUCE)
    set(JUCE_FOUND ON)
endif()
if(NOT JUCE_FOUND)
    message(STATUS "JUCE is not there: the editor is left out")
    return()
endif()
# Debian's JUCE leaves these to the system, others bring their own.
set(quillo_image_libraries)
if(NOT APPLE)
    find_package(JPEG REQUIRED)
    find_package(PNG REQUIRED)
    set(quillo_image_libraries JPEG::JPEG PNG::PNG)
endif()

add_library(quillo-juce STATIC)
target_link_libraries(quillo-juce
    PRIVATE juce::juce_gui_basics
    INTERFACE ${quillo_image_libraries})
target_compile_definitions(quillo-juce PUBLIC
    JUCE_GLOBAL_MODULE_SETTINGS_INCLUDED=1
    JUCE_DISPLAY_SPLASH_SCREEN=0
    JUCE_STANDALONE_APPLICATION=0
    JUCE_USE_CURL=0
    JUCE_WEB_BROWSER=0
    JUCE_MODAL_LOOPS_PERMITTED=1)
target_compile_definitions(quillo-juce INTERFACE
    $<TARGET_PROPERTY:quillo-juce,COMPILE_DEFINITIONS>)
# The modules are a library like any other: neither our warnings nor the sanitizers judge them.
target_include_directories(quillo-juce SYSTEM INTERFACE
    $<TARGET_PROPERTY:quillo-juce,INCLUDE_DIRECTORIES>)
target_compile_options(quillo-juce PRIVATE -w)
# A module is a few large files already.
set_target_properties(quillo-juce PROPERTIES UNITY_BUILD OFF)

# A third of the time that JUCE takes to compile goes into optimising these, which neither draw nor render.
foreach(module IN ITEMS juce_core juce_gui_basics juce_gui_extra juce_audio_processors)
    get_target_property(module_sources ${module} INTERFACE_JUCE_MODULE_SOURCES)
    set_source_files_properties(${module_sources} PROPERTIES COMPILE_OPTIONS $<$<CONFIG:Release>:-O1>)
endforeach()

# The modules for plug-ins are for VST3, which is not built on a Mac.
if(APPLE)
    return()
endif()
set(quillo_audio_modules juce_audio_basics juce_audio_processors juce_gui_extra)
add_library(quillo-juce-audio STATIC)
foreach(module IN LISTS quillo_audio_modules)
    get_target_property(module_sources ${module} INTERFACE_JUCE_MODULE_SOURCES)
    target_sources(quillo-juce-audio PRIVATE ${module_sources})
    target_compile_definitions(quillo-juce-audio PUBLIC JUCE_MODULE_AVAILABLE_${module}=1)
endforeach()
target_link_libraries(quillo-juce-audio PUBLIC quillo-juce)
target_include_directories(quillo-juce-audio SYSTEM PUBLIC
    $<TARGET_PROPERTY:juce_vst3_headers,INTERFACE_INCLUDE_DIRECTORIES>)
target_compile_definitions(quillo-juce-audio PUBLIC JUCE_PLUGINHOST_VST3=1)
# One of the templates in the headers is not valid before it is instantiated, which never happens.
target_compile_options(quillo-juce-audio
    PUBLIC "$<$<CXX_COMPILER_ID:Clang>:-fdelayed-template-parsing;-Wno-delayed-template-parsing-in-cxx20>"
    PRIVATE -w)
set_target_properties(quillo-juce-audio PROPERTIES UNITY_BUILD OFF)
