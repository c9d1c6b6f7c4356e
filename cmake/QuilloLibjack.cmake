# SPDX-License-Identifier: GPL-3.0-or-later
# quillo-libjack: the library by which a program talks to a JACK server (PipeWire has one of the same kind).
# quillo-liblo: the library by which it talks OSC to a session manager. Without both on the machine there are
# no such targets, and everything but the stand-alone program is built all the same.

if(QUILLO_WITHOUT_LIBRARIES)
    return()
endif()
find_path(QUILLO_LIBJACK_INCLUDE jack/jack.h)
find_library(QUILLO_LIBJACK jack)
find_path(QUILLO_LIBLO_INCLUDE lo/lo.h)
find_library(QUILLO_LIBLO lo)
if(NOT QUILLO_LIBJACK_INCLUDE OR NOT QUILLO_LIBJACK OR NOT QUILLO_LIBLO_INCLUDE OR NOT QUILLO_LIBLO)
    message(STATUS "libjack or liblo is not there: midi-quillo-jack is left out")
    return()
endif()

add_library(quillo-libjack INTERFACE)
target_include_directories(quillo-libjack SYSTEM INTERFACE "${QUILLO_LIBJACK_INCLUDE}")
target_link_libraries(quillo-libjack INTERFACE "${QUILLO_LIBJACK}")

add_library(quillo-liblo INTERFACE)
target_include_directories(quillo-liblo SYSTEM INTERFACE "${QUILLO_LIBLO_INCLUDE}")
target_link_libraries(quillo-liblo INTERFACE "${QUILLO_LIBLO}")
