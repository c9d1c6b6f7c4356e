#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# editor-in-jalv.sh LV2_PATH PICTURE.png: opens the editor in the window of jalv on this display, adds a rule
# and sends its message by the display's own mouse, and waits for that message at the host's JACK port. Leaves
# a picture. Every wait is for something to happen; one that takes too long says what it waited for, and
# leaves a picture.
set -euo pipefail
if [[ -z ${EDITOR_IN_JALV_LIMITED-} ]]; then
    # Tests with a JACK server take turns, in all clones of this user: their clients share a store.
    exec 9>"/dev/shm/quillo-test-servers.$UID.lock"
    flock 9
    EDITOR_IN_JALV_LIMITED=1 exec timeout --foreground --kill-after=10 100 "$0" "$@"
fi
export LV2_PATH=$1 NO_AT_BRIDGE=1 XDG_RUNTIME_DIR JACK_DEFAULT_SERVER=quillo-editor-in-jalv
picture=$2
XDG_RUNTIME_DIR=$(mktemp -d)
port='MIDI Quillo:out'
clients=()
server=
export HOME=$XDG_RUNTIME_DIR XDG_CONFIG_HOME=$XDG_RUNTIME_DIR
trap end EXIT
trap 'echo "still waiting for $step; see $picture"; import -silent -window root "$picture"
    tail -n 20 "$XDG_RUNTIME_DIR"/{jackd,jalv} || true; exit 1' TERM

# Without a window manager the window stands in the corner, its menu bar above the editor of 500 x 250.
add_new=(246 153)
add_new_area=88x26+202+140
menu_area=140x100+204+34
note_on=(236 44)
undo_area=24x24+144+36
send=(387 93)

# The clients end first: JACK's library hangs in a client that is closed while its server goes.
end() {
    step='the end of the clients'
    if ((${#clients[@]} > 0)); then
        kill "${clients[@]}" 2>/dev/null || true
        wait "${clients[@]}" || true
    fi
    step='the end of the server'
    if [[ -n $server ]]; then
        kill "$server" 2>/dev/null || true
        wait "$server" || true
    fi
    rm -rf "$XDG_RUNTIME_DIR"
}

area() {
    import -silent -window root -crop "$1" rgb:- | cksum
}

click() {
    xdotool mousemove "$1" "$2" click 1
}

# Waits until something is written in the area: a bare window has one colour, text has many.
shows_text() {
    until (($(import -silent -window root -crop "$1" -format %k info:) > 4)); do :; done
}

# changes AREA COMMAND...: does it and waits until the area looks different.
changes() {
    local before
    before=$(area "$1")
    "${@:2}"
    until [[ $(area "$1") != "$before" ]]; do :; done
}

open_jalv() {
    jalv.gtk3 urn:midi-quillo:lv2 >"$XDG_RUNTIME_DIR/jalv" 2>&1 9>&- &
    clients+=($!)
    until jack_lsp | grep -q "$port"; do kill -0 $!; done
}

step='the JACK server'
setpriv --pdeathsig KILL jackd -r -S -t 400 -n "$JACK_DEFAULT_SERVER" -d dummy -r 48000 -p 256 \
    >"$XDG_RUNTIME_DIR/jackd" 2>&1 9>&- &
server=$!
until jack_lsp >/dev/null 2>&1; do kill -0 $!; done
step='the port of jalv'
open_jalv
step='the button to add a rule'
shows_text "$add_new_area"
step='the menu of new rules'
changes "$menu_area" click "${add_new[@]}"
step='the new rule'
changes "$undo_area" click "${note_on[@]}"

step='the listener'
stdbuf --output=L jack_midi_dump listener >"$XDG_RUNTIME_DIR/heard" 2>&1 9>&- &
clients+=($!)
until jack_connect "$port" listener:input 2>/dev/null; do kill -0 $!; done
step='the message'
until grep -q '90 3c 40' "$XDG_RUNTIME_DIR/heard"; do click "${send[@]}"; done
import -silent -window root "$picture"
echo "heard: $(grep -m 1 '90 3c 40' "$XDG_RUNTIME_DIR/heard")"
