# SPDX-License-Identifier: GPL-3.0-or-later
# Read by ctest: each suite of a GoogleTest program is a test. A process for every single one would take
# longer than most of the tests.

# quillo_add_suites(PROGRAM SUITES [PROPERTY VALUE ...]): a test for each suite of this program, with these
# properties. Their names are kept in the file SUITES until the program is newer. A program that cannot list
# them, or that was not built, is run as one test. All of them run in `quillo_emulator`, where that is set.
function(quillo_add_suites program suites)
    if("${program}" IS_NEWER_THAN "${suites}")
        execute_process(COMMAND ${quillo_emulator} "${program}" --gtest_list_tests
            OUTPUT_VARIABLE listed ERROR_QUIET RESULT_VARIABLE failed)
        string(REGEX MATCHALL "(^|\n)[A-Za-z0-9_/]+[.]" names "${listed}")
        if(failed OR NOT names)
            get_filename_component(name "${program}" NAME)
            add_test("${name}" ${quillo_emulator} "${program}")
            set_tests_properties("${name}" PROPERTIES ${ARGN})
            return()
        endif()
        list(TRANSFORM names STRIP)
        list(JOIN names "\n" names)
        file(WRITE "${suites}" "${names}\n")
    endif()
    file(STRINGS "${suites}" names)
    foreach(name IN LISTS names)
        string(REGEX REPLACE "[.]$" "" suite "${name}")
        add_test("${suite}" ${quillo_emulator} "${program}" "--gtest_filter=${name}*" --gtest_brief=1)
        set_tests_properties("${suite}" PROPERTIES ${ARGN})
    endforeach()
endfunction()
