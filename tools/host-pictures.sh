#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# host-pictures.sh BUNDLE.lv2 SEQUENCER.so FOLDER: draws where the plug-in goes in Ardour, qtractor and jalv,
# and the stand-alone, which lies beside the bundle, for the guide: FOLDER/host-ardour.png and so on. The
# hosts run with settings of their own on a display and a JACK server that nobody sees or hears. SEQUENCER is
# a library in the place of the system's MIDI sequencer, which machines without sound lack. The places that
# are clicked are those of Debian 12's versions, which have no window manager here to move them.
set -euo pipefail

if [[ ${1-} != --inside ]]; then
    for host in ardour qtractor jalv stand_alone; do
        tries=3 # Ardour 7.3 now and then waits for itself for ever.
        until timeout 150 xvfb-run --auto-servernum --server-args='-screen 0 1280x720x24 -noreset' \
            "$0" --inside "$@" "$host"; do
            ((--tries > 0)) || exit 1
        done
    done
    exit
fi
bundle=$(realpath "$2")
sequencer=$(realpath "$3")
folder=$(realpath "$4")
ardour_session=$(realpath "$(dirname "$0")/../tests/hosts/ardour/session.lua")
work=$(mktemp -d)
export HOME=$work XDG_CONFIG_HOME=$work/config XDG_CACHE_HOME=$work/cache XDG_DATA_HOME=$work/data
export XDG_RUNTIME_DIR=$work LV2_PATH=$work/lv2 NO_AT_BRIDGE=1
mkdir -p "$LV2_PATH"
ln -s "$bundle" /usr/lib/lv2/reasonablesynth.lv2 "$LV2_PATH"
trap 'end_all; rm -rf "$work"' EXIT

# The host first, which would ask whether to save, then the server.
end_all() {
    kill -KILL "${host_process-}" 2>/dev/null && wait "$host_process" 2>/dev/null || true
    kill "${server_process-}" 2>/dev/null && wait "$server_process" 2>/dev/null || true
}

# settled: waits until the screen has stayed as it is for two seconds, or for a while where something blinks.
settled() {
    local before='' now try
    for ((try = 0; try < 8; try++)); do
        now=$(import -silent -window root rgb:- | cksum)
        [[ $now != "$before" ]] || return 0
        before=$now
        sleep 2
    done
}

# window NAME: waits for a window whose title holds this, and prints its number.
window() {
    local found=''
    until [[ -n $found ]]; do
        sleep 1
        found=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -n 1) || true
    done
    echo "$found"
}

# click X Y [TIMES]
click() {
    xdotool mousemove "$1" "$2" click --repeat "${3:-1}" --delay 80 1
    settled
}

# picture NAME AREA
picture() {
    settled
    import -silent -window root -crop "$2" +repage "$folder/host-$1.png"
    echo "$folder/host-$1.png"
}

# A server of the host's own. Its name is always the same: a machine remembers servers that did not end well,
# eight at most, until one of the same name does.
jack() {
    export JACK_DEFAULT_SERVER=quillo-pictures
    jackd --no-realtime --name "$JACK_DEFAULT_SERVER" -d dummy -r 48000 -p 1024 >"$work/jackd.log" 2>&1 &
    server_process=$!
    jack_wait --server "$JACK_DEFAULT_SERVER" --wait --timeout 30 >/dev/null
}

# A track with the plug-in before its instrument, the mixer strip at the left, and the plug-in's window with a
# preset.
ardour() {
    local settings=$XDG_CONFIG_HOME/ardour7
    mkdir -p "$settings"
    touch "$settings/.a7"
    cat >"$settings/config" <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<Ardour><Config><Option name="try-autostart-engine" value="1"/></Config>
<Extra><AudioMIDISetup><EngineStates><State backend="JACK" driver="" device="" input-device=""
output-device=""
sample-rate="48000" buffer-size="1024" n-periods="0" input-latency="0" output-latency="0" input-channels="2"
output-channels="2" active="1" use-buffered-io="0" midi-option="" lru="1">
<MIDIDevices/></State></EngineStates>
</AudioMIDISetup></Extra></Ardour>
END
    SESSION=$work/song FORMAT=lv2 PLUGIN=urn:midi-quillo:lv2 \
        env -u DISPLAY timeout 120 ardour7-lua "$ardour_session" >"$work/lua.log" 2>&1
    jack
    command ardour --no-splash --no-announcements "$work/song/session.ardour" >"$work/ardour.log" 2>&1 &
    host_process=$!
    window 'session - Ardour' >/dev/null
    settled
    click 70 344
    xdotool mousemove 600 600 key shift+e
    settled
    click 54 169 2
    xdotool windowmove "$(window 'MIDI Quillo')" 420 300
    click 678 317
    click 697 607
    picture ardour 1000x600+0+90
    end_all
}

# The plug-in's window, with the menu of its presets.
jalv() {
    jack
    jalv.gtk3 -p urn:midi-quillo:lv2#preset-pedal-to-strings urn:midi-quillo:lv2 >"$work/jalv.log" 2>&1 &
    host_process=$!
    window 'MIDI Quillo' >/dev/null
    settled
    click 70 13
    picture jalv 500x276+0+0
    end_all
}

# An example in the stand-alone's window, and the menu that connects it.
stand_alone() {
    jack
    jack_midiseq nanoKEY 96000 0 60 24000 >"$work/keys.log" 2>&1 &
    local keys=$!
    jack_midi_dump synth >"$work/synth.log" 2>&1 &
    local synth=$!
    "$(dirname "$bundle")/midi-quillo-jack" --connect-in nanoKEY --connect-out synth >"$work/alone.log" 2>&1 &
    host_process=$!
    window 'MIDI Quillo' >/dev/null
    settled
    click 500 263
    click 1005 100
    picture stand-alone 820x420+230+40
    kill -KILL "$keys" "$synth"
    end_all
}

# A track with the plug-in before its instrument, and the menu of its presets.
qtractor() {
    cat >"$work/song.qtr" <<END
<!DOCTYPE qtractor-session>
<session name="song" version="0.9.31">
<properties><directory>$work</directory><sample-rate>48000</sample-rate><tempo>120</tempo>
<ticks-per-beat>960</ticks-per-beat>
<beats-per-bar>4</beats-per-bar><beat-divisor>2</beat-divisor></properties>
<devices><audio-engine>
<audio-bus name="Master" mode="duplex"><channels>2</channels></audio-bus></audio-engine>
<midi-engine><midi-bus name="Master" mode="duplex"/></midi-engine></devices>
<tracks><track name="Track" type="midi">
<properties><input-bus>Master</input-bus><output-bus>Master</output-bus>
<midi-channel>0</midi-channel></properties>
<state><gain>1</gain></state>
<plugins>
<plugin type="LV2"><filename>urn:midi-quillo:lv2</filename>
<index>0</index><activated>1</activated></plugin>
<plugin type="LV2"><filename>https://community.ardour.org/node/7596</filename>
<index>0</index><activated>1</activated></plugin>
</plugins></track></tracks>
</session>
END
    jack
    LD_PRELOAD=$sequencer command qtractor "$work/song.qtr" >"$work/qtractor.log" 2>&1 &
    host_process=$!
    window 'song.qtr' >/dev/null
    settled
    xdotool mousemove 185 180 click 3
    settled
    click 230 397
    picture qtractor 640x620+0+0
    end_all
}

"$5"
