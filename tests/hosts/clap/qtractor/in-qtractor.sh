#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# in-qtractor.sh PLUGIN PROBE SEQUENCER WRITER TEST: runs the test while qtractor, on a JACK server without
# hardware, plays the session that the writer leaves. The sequencer is a library in the place of one that
# machines without sound lack.
set -euo pipefail

plugin=$1 probe=$2 sequencer=$3 writer=$4 test=$5
folder=$(mktemp -d)
limit=100

# Tests with a JACK server take turns, in all clones of this user: their clients share a store.
exec 9>"/dev/shm/quillo-test-servers.$UID.lock"
flock 9

stop() {
    local process
    for process in "${started[@]}"; do
        kill "$process" 2>/dev/null || true
        wait "$process" || true
    done
    rm -rf "$folder"
}
started=()
trap stop EXIT

# A machine remembers servers that did not end well, eight at most, until one of the same name does.
export JACK_DEFAULT_SERVER=quillo-in-qtractor QUILLO_PROBE=$folder/heard
export HOME=$folder XDG_CONFIG_HOME=$folder XDG_RUNTIME_DIR=$folder QT_QPA_PLATFORM=offscreen
"$writer" "$folder" "$plugin" "$probe"
mkfifo "$QUILLO_PROBE"

timeout --kill-after=5 "$limit" jackd --no-realtime --name "$JACK_DEFAULT_SERVER" -d dummy -r 48000 -p 512 \
    >"$folder/jackd.log" 2>&1 9>&- &
started+=($!)
jack_wait --server "$JACK_DEFAULT_SERVER" --wait --timeout 60 >"$folder/wait.log" 2>&1 || {
    cat "$folder/jackd.log"
    exit 1
}

LD_PRELOAD=$sequencer timeout --kill-after=5 "$limit" qtractor "$folder/session.qtr" \
    >"$folder/qtractor.log" 2>&1 9>&- &
started=($! "${started[@]}")
timeout "$limit" "$test" || {
    cat "$folder/jackd.log" "$folder/qtractor.log"
    exit 1
}
