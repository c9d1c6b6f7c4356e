# SPDX-License-Identifier: GPL-3.0-or-later
# quillo-libjack: the library by which a program talks to a JACK server (PipeWire has one of the same kind). Without
# it on the machine there is no such target, and everything else is built all the same.

if(QUILLO_WITHOUT_LIBRARIES)
    return()
endif()
find_path(QUILLO_LIBJACK_INCLUDE jack/jack.h)
find_library(QUILLO_LIBJACK jack)
if(NOT QUILLO_LIBJACK_INCLUDE OR NOT QUILLO_LIBJACK)
    message(STATUS "libjack is not there: midi-quillo-jack is left out")
    return()
endif()

add_library(quillo-libjack INTERFACE)
target_include_directories(quillo-libjack SYSTEM INTERFACE "${QUILLO_LIBJACK_INCLUDE}")
target_link_libraries(quillo-libjack INTERFACE "${QUILLO_LIBJACK}")
