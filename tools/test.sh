# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# `./dev test`: the optimised tree, and what takes little time in it. `./dev test all`: every tree's tests,
# whatever happens in the others. `./dev test elsewhere`: what needs no library of this machine, in other
# surroundings. Sourced by ./dev.

run_tests() {
    need build editor jack plugins hosts display guide desktop
    test_trees release --label-exclude long
}

# What takes minutes belongs here: beyond the tests marked long, the trees with sanitizers and simulated
# hosts.
run_all_tests() {
    local status=0
    need build editor jack pipewire plugins hosts studios browser display guide desktop
    keep_addresses_plain test all
    test_trees "release asan tsan" || status=1
    simulate_for_commit 2>&1 | tee build/simulated.txt || status=1
    { printf '\nsimulated hosts:\n' && tail -n 15 build/simulated.txt; } >>build/test-summary.txt
    return "$status"
}

# Simulated hosts: about a minute on two processors. A commit always meets the same ones, so that it fails for
# everybody or for nobody.
simulate_for_commit() {
    local commit
    commit=$(git rev-parse --short=8 HEAD) || commit=1
    simulate --scenarios 600 --seed "$((16#$commit << 20))"
}

# What is portable, with another compiler, standard library, size of a pointer or processor. The editor, which
# needs libraries of this machine, is compiled alone.
run_tests_elsewhere() {
    local status=0
    need build editor elsewhere
    build_tree libc++-editor quillo-auv3-editor || status=1
    test_trees "libc++ 32-bit arm64" || status=1
    return "$status"
}

# test_trees "PRESET ..." [OPTION...]: tests each tree, with these options for ctest, and sums up.
test_trees() {
    local preset passed=() failed=()
    for preset in $1; do
        if test_tree "$preset" "${@:2}"; then
            passed=("$preset" "${passed[@]}")
        else
            failed+=("$preset")
        fi
    done
    mkdir -p build
    summaries "${passed[@]}" "${failed[@]}" | tee build/test-summary.txt
    ((${#failed[@]} == 0))
}

# Sanitizers lay out their memory by fixed addresses, with which the random layout of some kernels collides:
# starts ./dev again with a plain layout where the system grants one.
keep_addresses_plain() {
    if [[ -z ${QUILLO_ADDRESSES_PLAIN-} ]] && setarch --addr-no-randomize true 2>/dev/null; then
        QUILLO_ADDRESSES_PLAIN=1 exec setarch --addr-no-randomize ./dev "$@"
    fi
}

# test_tree PRESET [OPTION...]: builds and tests one tree, with these options for ctest, and leaves its
# summary in the tree.
test_tree() {
    local tree status=0 progress=()
    tree=$(tree_of "$1")
    mkdir -p "$tree"
    echo "did not build" >"$tree/summary.txt"
    build_tree "$1" || return
    if [[ -t 1 ]]; then
        progress=(--progress)
    fi
    say "testing, preset $1"
    ctest --preset "$1" "${progress[@]}" --parallel "$QUILLO_JOBS" --no-tests=error \
        --output-log "$tree/ctest.log" "${@:2}" || status=1
    ctest_summary "$tree/ctest.log" >"$tree/summary.txt"
    return "$status"
}

# What a reader looks for in a ctest log: which tests failed, the single ones in them, and the count in the
# last line.
ctest_summary() {
    sed -n '/^The following tests/,$p' "$1" | grep '^\s' || true
    sed -n 's/^\[  FAILED  \] \([^ ]*\.[^ ,]*\)\(,.*\)\? ([0-9]* ms)$/\t\1/p' "$1"
    grep '% tests passed' "$1" || echo "no tests were found"
}

# summaries PRESET...: those that failed come last, where they are seen.
summaries() {
    local preset
    for preset in "$@"; do
        printf '\n%s:\n' "$preset"
        cat "$(tree_of "$preset")/summary.txt"
    done
}
