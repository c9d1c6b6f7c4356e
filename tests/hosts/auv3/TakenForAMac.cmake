# SPDX-License-Identifier: GPL-3.0-or-later
# A toolchain that makes CMake take this machine for a Mac with Xcode: enough to read every line of the
# project's files for macOS and to write build files, not to build. Frameworks are believed to be there, and
# no other libraries; JUCE is the system's. X11 is not there.
set(CMAKE_SYSTEM_NAME Darwin)
set(XCODE ON)
foreach(language IN ITEMS C CXX OBJC OBJCXX)
    if(language MATCHES XX)
        find_program(CMAKE_${language}_COMPILER clang++-22 REQUIRED)
    else()
        find_program(CMAKE_${language}_COMPILER clang-22 REQUIRED)
    endif()
    set(CMAKE_${language}_COMPILER_WORKS ON)
endforeach()
set(CMAKE_INSTALL_NAME_TOOL install_name_tool)
set(CMAKE_HAVE_LIBC_PTHREAD ON)
file(GLOB JUCE_DIR /usr/lib/*/cmake/JUCE-7*)

set(CMAKE_DISABLE_FIND_PACKAGE_X11 ON)

function(find_library variable name)
    if(name MATCHES "^[A-Z]")
        set(${variable} "-framework ${name}" CACHE INTERNAL "")
    else()
        set(${variable} "${variable}-NOTFOUND" CACHE INTERNAL "")
    endif()
endfunction()
