# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# `./dev test`: every tree's tests, whatever happens in the others. Sourced by ./dev.

run_tests() {
    need build editor jack pipewire plugins hosts display guide
    keep_addresses_plain test
    local preset passed=() failed=()
    for preset in release asan tsan; do
        if test_tree "$preset"; then
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

# test_tree PRESET: builds and tests one tree and leaves its summary in the tree.
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
    ctest --preset "$1" "${progress[@]}" --parallel "$QUILLO_JOBS" --no-tests=error --output-log "$tree/ctest.log" ||
        status=1
    ctest_summary "$tree/ctest.log" >"$tree/summary.txt"
    return "$status"
}

# What a reader looks for in a ctest log: which tests failed, and the count in the last line.
ctest_summary() {
    sed -n '/^The following tests/,$p' "$1" | grep '^\s' || true
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
