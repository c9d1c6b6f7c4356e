#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# hosts.sh BUILD: of each format, software centres and Debian's tools are told those hosts that load it.
set -euo pipefail

# names FORMAT HOST...: what is said of the plug-in in this format.
names() {
    local format=$1 suggested
    shift
    suggested=$(printf ' | %s' "${@,,}")
    suggested="${suggested# | }, xdg-utils"
    diff <(printf '%s\n' "$@") <(sed -n 's|.*<extends>.*\.\(.*\)</extends>.*|\1|p' \
        "packaging/example.midi_quillo.$format.metainfo.xml")
    diff <(echo "$suggested") \
        <(awk -v of="midi-quillo-$format" '/^Package:/ { here = $2 == of } here && sub("^Suggests: ", "")' \
            package/debian/control)
}

cd "$1"
names lv2 Ardour qtractor
names clap qtractor
names vst3 Ardour
