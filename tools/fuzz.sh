# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# `./dev fuzz`: libFuzzer on what reads what others have made. Sourced by ./dev.

# fuzz SECONDS [TARGET]: so long on each target, or on one. What is found lies in build-fuzz/found, the inputs
# that reached something new in build-fuzz/corpus, where the next run begins.
fuzz() {
    local seconds=$1 targets=() target status=0
    need build jack plugins fuzz
    keep_addresses_plain fuzz "$@"
    build_tree fuzz "${2:+fuzz-}${2:-quillo-fuzz-targets}" || return
    mapfile -t targets < <(fuzz_targets "${2-}")
    say "$seconds s on each of: ${targets[*]}"
    for target in "${targets[@]}"; do
        while (($(jobs -pr | wc -l) >= QUILLO_JOBS)); do
            wait -n || status=1
        done
        fuzz_target "$target" "$seconds" &
    done
    while (($(jobs -p | wc -l) > 0)); do
        wait -n || status=1
    done
    fuzz_table "${targets[@]}"
    return "$status"
}

# fuzz_targets [TARGET]: that one, or every one.
fuzz_targets() {
    local seeds
    for seeds in build-fuzz/fuzz/${1:-*}.seeds; do
        basename "$seeds" .seeds
    done
}

fuzz_target() {
    local target=$1 seeds=() options=(-max_len=4096 -rss_limit_mb=4096 -print_final_stats=1)
    mapfile -t seeds <"build-fuzz/fuzz/$target.seeds"
    mkdir -p "build-fuzz/corpus/$target" build-fuzz/found
    if [[ $target =~ document|preset|script|state ]]; then
        options+=(-dict=fuzz/json.dict)
    fi
    options+=(-max_total_time="$2" -artifact_prefix="build-fuzz/found/$target-")
    "build-fuzz/fuzz/fuzz-$target" "${options[@]}" \
        "build-fuzz/corpus/$target" "${seeds[@]}" >"build-fuzz/$target.log" 2>&1
}

# fuzz_table TARGET...: what each run came to, from its log, and how to see again what was found.
fuzz_table() {
    local target log
    printf '\n%-16s %12s %8s %8s  %s\n' target executions per-s edges found
    for target in "$@"; do
        log=build-fuzz/$target.log
        printf '%-16s %12s %8s %8s  %s\n' "$target" \
            "$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")" \
            "$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")" \
            "$(sed -n 's/.* cov: \([0-9]*\) .*/\1/p' "$log" | tail -n 1)" \
            "$(sed -n "s|.*Test unit written to \(.*\)|build-fuzz/fuzz/fuzz-$target \1|p" "$log")"
    done
}
