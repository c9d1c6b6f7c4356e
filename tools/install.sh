# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# `./dev install` and `./dev uninstall`: the plug-ins where hosts of this user look for them, and the guide and the
# example presets where the editor does. Sourced by ./dev.

# placements: what is built, and where it belongs, one a line with a bar between.
placements() {
    cat <<END
build/midi-quillo.lv2|${HOME}/.lv2/midi-quillo.lv2
build/midi-quillo.clap|${HOME}/.clap/midi-quillo.clap
build/MIDI Quillo.vst3|${HOME}/.vst3/MIDI Quillo.vst3
build/guide|${XDG_DATA_HOME:-${HOME}/.local/share}/doc/midi-quillo/guide
build/share/midi-quillo/presets|${XDG_DATA_HOME:-${HOME}/.local/share}/midi-quillo/presets
END
}

# require_home: the places are the user's own.
require_home() {
    if [[ ${HOME-} != /* ]]; then
        say "HOME names no folder: there is no place where hosts of this user look"
        exit 69
    fi
}

install_for_user() {
    require_home
    need build editor jack plugins guide
    build_tree release quillo-product
    local built place
    while IFS='|' read -r built place; do
        if [[ ! -e $built ]]; then
            say "left out, for it could not be built here: $built"
            continue
        fi
        mkdir -p "$(dirname "$place")"
        rm -rf "$place.new"
        cp -a "$built" "$place.new"
        rm -rf "$place"
        mv "$place.new" "$place"
        echo "$place"
    done < <(placements)
}

uninstall_for_user() {
    require_home
    local place
    while IFS='|' read -r _ place; do
        if [[ -e $place ]]; then
            rm -rf "$place"
            echo "removed: $place"
        fi
    done < <(placements)
}
