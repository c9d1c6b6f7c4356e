# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# `./dev coverage`: which branches of the core its own tests take. Sourced by ./dev.

coverage_folders='rules persistence engine log'
coverage_tests='rules-tests persistence-tests engine-tests log-tests mailbox-tests'

# One page: how many branches of each folder are taken, and each that is not with its reason. Fails where none
# is given.
coverage() {
    need build coverage
    keep_addresses_plain coverage
    local programs=() folders=() name tree=build-coverage
    configure coverage || return
    for name in $coverage_tests; do
        compile coverage "$name" || return
        programs+=("$(find "$tree/tests" -type f -name "$name" -perm -u+x)")
    done
    for name in $coverage_folders; do
        folders+=("MIDI_Quillo_Extension_macOS/$name")
    done
    run_with_profiles "$tree/profiles" "${programs[@]}" || return
    llvm-profdata-22 merge -sparse "$tree"/profiles/*.profraw -o "$tree/all.profdata" || return
    llvm-cov-22 export -format=lcov -instr-profile="$tree/all.profdata" \
        "${programs[0]}" "${programs[@]/#/-object=}" -sources "${folders[@]}" >"$tree/branches.lcov" || return
    awk -v here="$PWD/" -f tools/coverage.awk tools/coverage-reasons.txt "$tree/branches.lcov"
}

# run_with_profiles FOLDER PROGRAM...: each program's tests, and what they ran.
run_with_profiles() {
    local folder=$1 program
    shift
    rm -rf "$folder"
    for program in "$@"; do
        say "running ${program##*/}"
        LLVM_PROFILE_FILE="$folder/${program##*/}.profraw" "$program" --gtest_brief=1 || return
    done
}
