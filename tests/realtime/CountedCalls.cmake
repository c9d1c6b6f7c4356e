# SPDX-License-Identifier: GPL-3.0-or-later
# In programs that count, the calls are counted that a render thread must not make: those of the program and
# those of the binaries that it loads. QUILLO_COUNTS_CALLS and QUILLO_COUNTS_LOCKS are defined where they are:
# that depends on whose the allocator and the locks are.
set(quillo_counted_calls_folder "${CMAKE_CURRENT_LIST_DIR}")

add_library(quillo-call-counter STATIC "${quillo_counted_calls_folder}/CallCounter.cpp")
target_link_libraries(quillo-call-counter PUBLIC quillo-test-options)

# quillo_count_calls(PROGRAM): lets a program count.
function(quillo_count_calls name)
    if(NOT QUILLO_SANITIZE)
        set(watching InterposedAllocator.cpp InterposedLocks.cpp)
        set(counted QUILLO_COUNTS_CALLS QUILLO_COUNTS_LOCKS)
    elseif(NOT QUILLO_SANITIZE STREQUAL "realtime")
        set(watching SanitizerHooks.cpp)
        set(counted QUILLO_COUNTS_CALLS)
    endif()
    foreach(source IN LISTS watching)
        target_sources(${name} PRIVATE "${quillo_counted_calls_folder}/${source}")
    endforeach()
    target_link_libraries(${name} PRIVATE quillo-call-counter ${CMAKE_DL_LIBS})
    target_compile_definitions(${name} PRIVATE ${counted})
    set_target_properties(${name} PROPERTIES ENABLE_EXPORTS ON)
endfunction()

# quillo_add_call_counting_tests(NAME SOURCES ... LINK ... [REALTIME] [HEADERS NAME]): tests as
# `quillo_add_tests` makes them, in a program that counts.
function(quillo_add_call_counting_tests name)
    quillo_add_tests(${name} ${ARGN})
    if(TARGET ${name})
        quillo_count_calls(${name})
    endif()
endfunction()
