#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# echo-in-ardour.sh FORMAT BUNDLE PLUGIN PRESET CHECK...: plays a note in Ardour, without its window, once
# without and once through the plug-in with the preset's rules, and runs CHECK with the names of the two sound
# files behind it. FORMAT is vst3 or lv2; BUNDLE is the plug-in's folder and PLUGIN what Ardour knows it by.
set -euo pipefail

format=$1 bundle=$2 plugin=$3 preset=$4
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Whoever runs this has settings, plug-ins and a display of their own, and keeps them.
unset DISPLAY
export HOME=$work XDG_CONFIG_HOME=$work/config XDG_CACHE_HOME=$work/cache XDG_DATA_HOME=$work/data
export LV2_PATH=$work/lv2
mkdir -p "$LV2_PATH" "$work/.vst3"
ln -s /usr/lib/lv2/reasonablesynth.lv2 "$LV2_PATH"

fail() {
    printf '%s\n' "$@" >&2
    exit 1
}

# number BYTES VALUE: a whole number, its lowest byte first, as printf takes it.
number() {
    local left=$1 value=$2
    for (( ; left > 0; left--, value >>= 8)); do
        printf '\\x%02x' $((value & 255))
    done
}

# What Ardour saves of a VST3 plug-in is a preset file of the format: a header, the chunk, and where the chunk
# is.
vst3_state() {
    local header=48 size
    size=$(stat --format %s "$preset")
    printf "VST3$(number 4 1)$plugin$(number 8 $((header + size)))"
    cat "$preset"
    printf "List$(number 4 1)Comp$(number 8 $header)$(number 8 "$size")"
}

# Ardour takes a VST3 plug-in only after its scanner has seen it.
vst3_make_known() {
    ln -s "$bundle" "$work/.vst3"
    "$here/scan-for-ardour.sh" "$work/.vst3/$(basename "$bundle")" >"$work/scan" 2>&1 ||
        fail "$(<"$work/scan")"
}

# vst3_install_rules FOLDER: puts the preset's rules into the place of those that the plug-in was saved with.
vst3_install_rules() {
    local state session=$1/session.ardour
    state=$(vst3_state | base64 --wrap 0)
    sed -i "s|<chunk>[^<]*</chunk>|<chunk>$state</chunk>|" "$session"
    grep -q "<chunk>$state</chunk>" "$session" || fail "the session has nothing of the plug-in"
}

# Ardour finds an LV2 plug-in where the environment says.
lv2_make_known() {
    ln -s "$bundle" "$LV2_PATH"
}

# What Ardour saves of an LV2 plug-in is a file of its own, with the document as a text in it.
lv2_install_rules() {
    local file key='urn:midi-quillo:lv2#midi-quillo-state'
    file=$(echo "$1"/plugins/*/state*/state.ttl)
    grep -qF "<$key> " "$file" || fail "the session has nothing of the plug-in"
    cat >"$file" <<END
<> a <http://lv2plug.in/ns/ext/presets#Preset> ;
    <http://lv2plug.in/ns/lv2core#appliesTo> <$plugin> ;
    <http://lv2plug.in/ns/ext/state#state> [ <$key> """$(sed 's/\\/&&/g' "$preset")""" ] .
END
}

# The note, on the second beat of a MIDI file of 96 ticks a beat, and two beats long.
note() {
    printf 'MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\x0e\x81\x40\x90\x3c\x64\x81\x40\x80\x3c\x40\0\xff\x2f\0'
}

# Now and then Ardour 7.3, with whatever session, waits for itself for ever or aborts at the end of an export,
# and an export that went wrong in this way may be left behind with wrong samples. So everything that it does
# is tried again, within limits, and a sound counts when it has come out twice.
tries=6
patience=60

# make_session FOLDER PLUGIN: a session of four seconds, 120 beats a minute, with the note in its track.
make_session() {
    local try session=$1/session.ardour region range
    for ((try = 1; try <= tries; try++)); do
        rm -rf "$1"
        SESSION=$1 PLUGIN=$2 FORMAT=$format \
            timeout "$patience" ardour7-lua "$here/session.lua" >"$1.log" 2>&1 || true
        [[ ! -e $1/made ]] || break
    done
    [[ -e $1/made ]] || fail "$(<"$1.log")"
    note >"$1/interchange/$(basename "$1")/midifiles/note.mid"
    region='<Region id="9003" name="note" type="midi" start="b0" length="b7680@b0"'
    region+=' source-0="9002" master-source-0="9002"/>'
    range='<Location id="9001" name="session" start="a0" end="a1128960000" flags="IsSessionRange"/>'
    sed -i "$session" \
        -e 's|<Sources/>|<Sources><Source id="9002" name="note.mid" type="midi" flags=""/></Sources>|' \
        -e "s|\(<Playlist [^>]* name=\"Track\" [^>]*\)/>|\1>$region</Playlist>|" \
        -e "s|<Locations/>|<Locations>$range</Locations>|"
}

# Whether two sound files have the same sound; their headers tell the time.
sound_alike() {
    cmp --quiet --ignore-initial=88 "$1" "$2" 2>/dev/null
}

# render FOLDER: its sound is FOLDER.wav.
render() {
    local try earlier
    for ((try = 1; try <= tries; try++)); do
        timeout "$patience" ardour7-export -b float -o "$1-$try.wav" "$1" session \
            >"$1.log" 2>&1 </dev/null || continue
        for ((earlier = 1; earlier < try; earlier++)); do
            if sound_alike "$1-$earlier.wav" "$1-$try.wav"; then
                mv "$1-$try.wav" "$1.wav"
                return
            fi
        done
    done
    fail "$(<"$1.log")" "Ardour has not rendered $1 twice alike"
}

"${format}_make_known"
make_session "$work/plain" ""
make_session "$work/echo" "$plugin"
"${format}_install_rules" "$work/echo"
render "$work/plain"
render "$work/echo"
"${@:5}" "$work/plain.wav" "$work/echo.wav"
