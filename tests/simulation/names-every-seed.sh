#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# names-every-seed.sh PROGRAM: however a scenario ends, the simulator names its seed and fails; and it fails
# where nothing was played.
set -euo pipefail

program=$1
said=$(mktemp)
trap 'rm -f "$said"' EXIT

fail() {
    echo "$1"
    cat "$said"
    exit 1
}

# ends_by SIGNAL TEXT: what is said of a worker that gets this signal.
ends_by() {
    local status=0 simulator worker=
    "$program" --scenarios 1000000 --seed 5 --patience 1 2>"$said" &
    simulator=$!
    until [[ -n $worker ]]; do
        kill -0 "$simulator" || fail "it ends without a worker"
        worker=$(pgrep -P "$simulator") || true
    done
    kill "-$1" "$worker"
    wait "$simulator" || status=$?
    ((status == 1)) || fail "after SIG$1 it ends with $status"
    grep -q "$2" "$said" || fail "SIG$1 names no seed"
}

ends_by KILL '^Seed [0-9][0-9]* ends by signal 9'
ends_by STOP '^Seed [0-9][0-9]* goes on for more than 1 seconds'

# is_wrong STATUS ARGUMENT...
is_wrong() {
    local status=0
    "$program" "${@:2}" 2>"$said" || status=$?
    ((status == $1)) || fail "${*:2} ends with $status"
}

is_wrong 1 --scenarios 0
is_wrong 1 0
is_wrong 64 60 --scenarios 3
