# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# `./dev install` and `./dev uninstall`: the programs where shells of this user find them, the plug-ins where
# hosts do, and the guide and the example presets where the editor does. Sourced by ./dev.

# placements: what is built or ready, and where it belongs, one a line with a bar between. Manuals belong
# beside the folder of the programs, wherever other data are: that is where man looks.
placements() {
    local data=${XDG_DATA_HOME:-${HOME}/.local/share}
    local icons=$data/icons/hicolor
    cat <<END
build/midi-quillo|${HOME}/.local/bin/midi-quillo
build/midi-quillo-jack|${HOME}/.local/bin/midi-quillo-jack
docs/man/midi-quillo.1|${HOME}/.local/share/man/man1/midi-quillo.1
docs/man/midi-quillo-jack.1|${HOME}/.local/share/man/man1/midi-quillo-jack.1
build/guide/midi-quillo-guide.7|${HOME}/.local/share/man/man7/midi-quillo-guide.7
hosts/jack/data/midi-quillo-jack.desktop|${data}/applications/midi-quillo-jack.desktop
hosts/jack/data/midi-quillo-jack.svg|${icons}/scalable/apps/midi-quillo-jack.svg
hosts/jack/data/midi-quillo-jack-128.png|${icons}/128x128/apps/midi-quillo-jack.png
hosts/jack/data/midi-quillo-jack-32.png|${icons}/32x32/apps/midi-quillo-jack.png
build/midi-quillo.lv2|${HOME}/.lv2/midi-quillo.lv2
build/midi-quillo.clap|${HOME}/.clap/midi-quillo.clap
build/MIDI Quillo.vst3|${HOME}/.vst3/MIDI Quillo.vst3
build/guide|${data}/doc/midi-quillo/guide
build/share/midi-quillo/presets|${data}/midi-quillo/presets
END
}

# require_home: the places are the user's own.
require_home() {
    if [[ ${HOME-} != /* ]]; then
        say "HOME names no folder: there is no place where hosts of this user look"
        exit 69
    fi
}

# reference_to PATH: what a Turtle file may say for it.
reference_to() {
    local LC_ALL=C character text=
    local -i at
    for ((at = 0; at < ${#1}; ++at)); do
        character=${1:at:1}
        case $character in
        [A-Za-z0-9/._~-]) text+=$character ;;
        *) printf -v text '%s%%%02X' "$text" $(($(printf '%d' "'$character") & 255)) ;;
        esac
    done
    echo "$text"
}

# lead_to_guide BUNDLE PLACE: lets an LV2 bundle that is to be at PLACE lead to this user's guide.
lead_to_guide() {
    local way
    way=$(realpath --canonicalize-missing --no-symlinks --relative-to="$2" \
        "${XDG_DATA_HOME:-${HOME}/.local/share}/doc/midi-quillo/guide")
    sed -i -e "s|<[./]*/share/doc/midi-quillo/guide/|<$(reference_to "$way")/|" "$1/midi-quillo.ttl"
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
        [[ $place != *.lv2 ]] || lead_to_guide "$place.new" "$place"
        rm -rf "$place"
        mv "$place.new" "$place"
        echo "$place"
    done < <(placements)
    [[ :$PATH: == *:"$HOME/.local/bin":* ]] ||
        say "your shell looks for programs elsewhere: add $HOME/.local/bin to PATH, or log in again"
}

# A folder of ours that others have put something into stays.
uninstall_for_user() {
    require_home
    local place folder
    while IFS='|' read -r _ place; do
        if [[ -e $place ]]; then
            rm -rf "$place"
            folder=$(dirname "$place")
            [[ $folder != */midi-quillo ]] || rmdir --ignore-fail-on-non-empty "$folder"
            echo "removed: $place"
        fi
    done < <(placements)
}
