#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# A newcomer's first hour, in a bare Debian 12 with the packages beside this script: install, render a file,
# start the stand-alone, see the plug-ins in hosts, read the manual, upgrade, remove. Every command is shown
# before it runs, and the first one that fails ends it.
set -euo pipefail
cd "$(dirname "$0")"
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8

packages=(midi-quillo midi-quillo-clap midi-quillo-doc midi-quillo-jack midi-quillo-lv2 midi-quillo-vst3)

show() {
    printf '\n$ %s\n' "$*"
    "$@"
}

quietly() {
    printf '\n$ %s\n' "$*"
    "$@" >/tmp/output 2>&1 || { tail -n 20 /tmp/output; return 1; }
}

# expect TEXT COMMAND...: the command's output must hold the text.
expect() {
    local text=$1
    shift
    printf '\n$ %s\n' "$*"
    "$@" 2>&1 | tee /tmp/output | tail -n 12
    grep -q -e "$text" /tmp/output || { echo "expected: $text" >&2; return 1; }
}

install_it() {
    quietly apt-get update
    quietly apt-get install --yes --no-install-recommends ./*.deb
    dpkg -L "${packages[@]}" | while read -r path; do [[ ! -f $path ]] || echo "$path"; done >/tmp/installed
    expect "Version: 1" dpkg -s midi-quillo
}

render_a_file() {
    local presets=/usr/share/midi-quillo/presets
    expect "events in" midi-quillo render $presets/demo.mid /tmp/out.mid --preset $presets/demo.json
    expect "fires" midi-quillo explain --preset $presets/demo.json "b0 40 7f"
    expect "First echo" midi-quillo check $presets/echo.json --advice
}

start_the_stand_alone() {
    quietly apt-get install --yes --no-install-recommends jackd2
    jackd --realtime -n newcomer -d dummy -r 48000 -p 256 >/tmp/jackd 2>&1 &
    local server=$!
    export JACK_DEFAULT_SERVER=newcomer
    until jack_lsp >/dev/null 2>&1; do kill -0 $server; done
    printf '\n$ midi-quillo-jack --no-window --preset %s &\n' /usr/share/midi-quillo/presets/echo.json
    midi-quillo-jack --no-window --preset /usr/share/midi-quillo/presets/echo.json >/tmp/stand-alone 2>&1 &
    local program=$!
    until jack_lsp | grep -q MIDIQuillo; do kill -0 $program; done
    show jack_lsp --type
    show kill -TERM $program
    wait $program
    cat /tmp/stand-alone
    kill $server
    wait $server || true
}

load_the_plug_ins() {
    quietly apt-get install --yes --no-install-recommends lilv-utils jalv
    expect "MIDIQuillo" lv2info urn:midi-quillo:lv2
    show ls /usr/lib/clap /usr/lib/vst3
    jackd --realtime -n newcomer -d dummy -r 48000 -p 256 >/tmp/jackd 2>&1 &
    local server=$!
    until jack_lsp >/dev/null 2>&1; do kill -0 $server; done
    printf '\n$ jalv -n quillo urn:midi-quillo:lv2 &\n'
    mkfifo /tmp/keyboard
    jalv -n quillo urn:midi-quillo:lv2 </tmp/keyboard >/tmp/jalv 2>&1 &
    local host=$!
    exec 3>/tmp/keyboard
    until jack_lsp | grep -q '^quillo:'; do kill -0 $host; done
    show jack_lsp
    exec 3>&-
    wait $host || true
    kill $server
    wait $server || true
}

read_the_manual() {
    quietly apt-get install --yes --no-install-recommends man-db
    local page
    for page in midi-quillo midi-quillo-jack midi-quillo-guide; do
        printf '\n$ man %s | head -n 6\n' $page
        man $page >/tmp/manual 2>/tmp/warnings
        cat /tmp/warnings
        [[ ! -s /tmp/warnings ]]
        head -n 6 /tmp/manual
    done
    show test -s /usr/share/doc/midi-quillo/guide/index.html
}

use_the_archive() {
    mkdir -p /opt/anywhere
    show tar -xzf midi-quillo-*-linux-*.tar.gz -C /opt/anywhere --strip-components=1
    expect "rules" /opt/anywhere/bin/midi-quillo check /opt/anywhere/share/midi-quillo/presets/echo.json
}

upgrade_it() {
    quietly apt-get install --yes --no-install-recommends ./newer/*.deb
    expect '^Version: .*\.1$' dpkg -s midi-quillo
    expect "rules" midi-quillo check /usr/share/midi-quillo/presets/echo.json
}

remove_it() {
    quietly apt-get purge --yes "${packages[@]}"
    local path left=0
    while read -r path; do
        [[ ! -e $path ]] || { echo "left behind: $path"; left=1; }
    done </tmp/installed
    ((left == 0))
    echo "nothing of $(wc -l </tmp/installed) files is left"
}

install_it
render_a_file
start_the_stand_alone
load_the_plug_ins
read_the_manual
use_the_archive
upgrade_it
remove_it
