# SPDX-License-Identifier: GPL-3.0-or-later
# quillo_add_call_counting_tests(NAME SOURCES ... LINK ... [REALTIME] [HEADERS NAME]): tests as `quillo_add_tests`
# makes them, in which calls that a render thread must not make are counted: those of the program and those of the
# binaries that it loads. QUILLO_COUNTS_CALLS and QUILLO_COUNTS_LOCKS are defined where they are: that depends on whose
# the allocator and the locks are.
set(quillo_counted_calls_folder "${CMAKE_CURRENT_LIST_DIR}")

function(quillo_add_call_counting_tests name)
    cmake_parse_arguments(ARG "REALTIME" "HEADERS" "SOURCES;LINK" ${ARGN})
    set(watching CallCounter.cpp)
    if(NOT QUILLO_SANITIZE)
        list(APPEND watching InterposedAllocator.cpp InterposedLocks.cpp)
        set(counted QUILLO_COUNTS_CALLS QUILLO_COUNTS_LOCKS)
    elseif(NOT QUILLO_SANITIZE STREQUAL "realtime")
        list(APPEND watching SanitizerHooks.cpp)
        set(counted QUILLO_COUNTS_CALLS)
    endif()
    list(TRANSFORM watching PREPEND "${quillo_counted_calls_folder}/")
    set(kind)
    if(ARG_REALTIME)
        set(kind REALTIME)
    endif()
    if(ARG_HEADERS)
        list(APPEND kind HEADERS ${ARG_HEADERS})
    endif()
    quillo_add_tests(${name} ${kind} SOURCES ${ARG_SOURCES} ${watching} LINK ${ARG_LINK} ${CMAKE_DL_LIBS})
    if(TARGET ${name})
        set_target_properties(${name} PROPERTIES ENABLE_EXPORTS ON)
        target_compile_definitions(${name} PRIVATE ${counted})
    endif()
endfunction()
