# SPDX-License-Identifier: GPL-3.0-or-later
# What every target of the project has in common: the language, the warnings, the sanitizers, and
# functions that make a library, a program or a test in one line.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(QUILLO_CCACHE ccache)
if(QUILLO_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${QUILLO_CCACHE}")
endif()

# GCC compiles two dozen files of a target as one: what they include, most of a build, is read once for all of
# them. Half a gigabyte, in kB, may then pile up before it looks for memory that it no longer needs: looking
# takes a tenth to a fifth of the time, to save a fifth of the memory. Clang's trees compile each file as it
# stands.
set(quillo_memory_to_compile "")
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    if(NOT DEFINED CMAKE_UNITY_BUILD)
        set(CMAKE_UNITY_BUILD ON)
    endif()
    set(quillo_memory_to_compile --param=ggc-min-heapsize=524288)
    add_compile_options(${quillo_memory_to_compile})
endif()
set(CMAKE_UNITY_BUILD_BATCH_SIZE 24)

add_library(quillo-options INTERFACE)
target_compile_options(quillo-options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion
    $<$<BOOL:${QUILLO_WARNINGS_AS_ERRORS}>:-Werror>)
# Between files that are compiled as one, these two are no mistakes.
if(CMAKE_UNITY_BUILD)
    target_compile_options(quillo-options INTERFACE -Wno-subobject-linkage)
else()
    target_compile_options(quillo-options INTERFACE -Wshadow)
endif()
if(QUILLO_SANITIZE)
    target_compile_options(quillo-options INTERFACE
        -fsanitize=${QUILLO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
    target_link_options(quillo-options INTERFACE -fsanitize=${QUILLO_SANITIZE})
endif()

# What renders is optimised as one when a plug-in or a program is linked: an event passes a dozen short
# functions of as many files. What only developers run links the same objects as they are, which is quicker.
set(quillo_optimised_as_one "")
set(quillo_linked_as_it_is $<$<CXX_COMPILER_ID:GNU>:-fno-lto>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT QUILLO_SANITIZE)
    set(quillo_optimised_as_one "$<$<CONFIG:Release>:-O3;-flto=auto;-ffat-lto-objects>")
    add_link_options($<$<CONFIG:Release>:-flto=auto>)
endif()

# A binary holds what it calls, and nothing that was merely compiled together with it.
if(NOT APPLE)
    add_compile_options(-ffunction-sections -fdata-sections)
    add_link_options(-ffunction-sections -fdata-sections LINKER:--gc-sections)
endif()

# What is made for users is hardened: a smashed stack or an overrun buffer ends the program, and no table of
# functions can be written to once it runs. Builds of another type take the flags that they are given, as
# distributions want it.
set(quillo_release $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
if(NOT QUILLO_SANITIZE)
    add_compile_options("$<${quillo_release}:-fstack-protector-strong;-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>")
endif()
if(NOT QUILLO_SANITIZE AND NOT APPLE)
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES CXX)
    add_link_options("$<${quillo_release}:LINKER:-z,relro,-z,now,-z,noexecstack>")
endif()

# What every test program has in common. What is tested is optimised, the tests are not: most of a build is
# compiling them.
add_library(quillo-test-options INTERFACE)
target_link_libraries(quillo-test-options INTERFACE quillo-options)
target_include_directories(quillo-test-options INTERFACE "${PROJECT_SOURCE_DIR}/tests")
target_compile_options(quillo-test-options INTERFACE -O0)
target_link_options(quillo-test-options INTERFACE ${quillo_linked_as_it_is})

# quillo_add_library(NAME FOLDER [RENDERS] HEADERS ... SOURCES ... LINK ...): a static library whose headers
# are included relative to FOLDER and can each be compiled alone. RENDERS is for what the render thread runs.
function(quillo_add_library name folder)
    cmake_parse_arguments(ARG "RENDERS" "" "HEADERS;SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC)
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS "${folder}")
    quillo_add_sources(${name} HEADERS ${ARG_HEADERS} SOURCES ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC quillo-options ${ARG_LINK})
    set_target_properties(${name} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
    if(ARG_RENDERS)
        # Nobody replaces our functions at run time: without this, GCC calls even what stands in the same
        # file.
        target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)
        target_compile_options(${name} PRIVATE ${quillo_optimised_as_one})
    endif()
    # The function effects are checked where the code is ours; tests and programs may call what they like.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 20)
        target_compile_options(${name} PRIVATE -Wfunction-effects)
    endif()
endfunction()

# quillo_add_sources(NAME HEADERS ... SOURCES ...): more files of this folder for a library made above.
function(quillo_add_sources name)
    cmake_parse_arguments(ARG "" "" "HEADERS;SOURCES" ${ARGN})
    list(TRANSFORM ARG_HEADERS PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
    list(TRANSFORM ARG_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
    target_sources(${name}
        PRIVATE ${ARG_SOURCES}
        PUBLIC FILE_SET HEADERS FILES ${ARG_HEADERS})
endfunction()

# What nearly every test includes is compiled once: for programs without views, and for those with them.
# Clang's trees compile each file as it stands, and so find the includes that it lacks.
function(quillo_add_test_headers name)
    cmake_parse_arguments(ARG "" "" "HEADERS;LINK" ${ARGN})
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        return()
    endif()
    file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp" "")
    add_library(${name} OBJECT EXCLUDE_FROM_ALL "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
    target_link_libraries(${name} PRIVATE ${ARG_LINK} quillo-test-options GTest::gmock)
    target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
    # Compiled as programs are, not as what is also linked into plug-ins.
    set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
    target_compile_options(${name} PRIVATE -fPIE)
endfunction()

# quillo_use_test_headers(PROGRAM NAME): for a program all of whose files are compiled like those headers.
function(quillo_use_test_headers program name)
    if(TARGET ${name})
        target_precompile_headers(${program} REUSE_FROM ${name})
    endif()
endfunction()

# quillo_add_tests(NAME SOURCES ... LINK ... [THREADS] [REALTIME] [LONG] [LOCK RESOURCE] [HEADERS NAME]): a
# GoogleTest program, each of its suites a test of ctest. Under ThreadSanitizer only the programs marked
# THREADS are built, under RealtimeSanitizer only those marked REALTIME. LONG is for what `./dev test` leaves
# to `./dev test all`; suites with the same LOCK run one after the other. HEADERS names other precompiled
# headers than those without views.
function(quillo_add_tests name)
    cmake_parse_arguments(ARG "THREADS;REALTIME;LONG" "LOCK;HEADERS" "SOURCES;LINK" ${ARGN})
    if((QUILLO_SANITIZE STREQUAL "thread" AND NOT ARG_THREADS) OR
       (QUILLO_SANITIZE STREQUAL "realtime" AND NOT ARG_REALTIME))
        return()
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LINK} quillo-test-options GTest::gmock GTest::gtest_main)
    if(NOT ARG_HEADERS)
        set(ARG_HEADERS quillo-test-headers)
    endif()
    quillo_use_test_headers(${name} ${ARG_HEADERS})

    set(properties TIMEOUT 300)
    if(CMAKE_CROSSCOMPILING_EMULATOR)
        set(properties TIMEOUT 1800)
    endif()
    if(ARG_LONG)
        list(APPEND properties LABELS long)
    endif()
    if(ARG_LOCK)
        list(APPEND properties RESOURCE_LOCK ${ARG_LOCK})
    endif()
    list(JOIN properties " " properties)
    set(suites "${CMAKE_CURRENT_BINARY_DIR}/${name}-suites")
    file(GENERATE OUTPUT "${suites}.cmake" CONTENT
"include(\"${PROJECT_SOURCE_DIR}/cmake/QuilloSuites.cmake\")
set(quillo_emulator \"${CMAKE_CROSSCOMPILING_EMULATOR}\")
quillo_add_suites(\"$<TARGET_FILE:${name}>\" \"${suites}.txt\" ${properties})
")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${suites}.cmake")
endfunction()
