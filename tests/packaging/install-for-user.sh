#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# install-for-user.sh BUILD: what `./dev install` copies from this build tree is found by a user who has
# nothing else, and `./dev uninstall` leaves nothing behind.
set -euo pipefail

source=$(realpath "$(dirname "$0")/../..")
desk=$(mktemp -d)
trap 'rm -rf "$desk"' EXIT
ln -s "$(realpath "$1")" "$desk/build"
ln -s "$source/docs" "$source/hosts" "$desk"
mkdir "$desk/home"
cd "$desk"
unset XDG_DATA_HOME LV2_PATH MANPATH
export HOME=$desk/home PATH=$desk/home/.local/bin:$PATH

# Everything is built.
need() { :; }
build_tree() { :; }
say() { echo "-- $*"; }
source "$source/tools/install.sh"

# is_file PATH: below the user's folder.
is_file() {
    [[ -s $HOME/$1 ]] || { echo "not installed: $1"; exit 1; }
}

# is_at_home PROGRAM: what a shell finds is what was installed, and it starts.
is_at_home() {
    [[ $(command -v "$1") == "$HOME/.local/bin/$1" ]] || { echo "not found: $1"; exit 1; }
    "$1" --version
    is_file ".local/share/man/man1/$1.1"
}

# leads_to REFERENCE: where hosts of LV2 plug-ins find the guide, below the user's folder.
leads_to() {
    lv2info urn:midi-quillo:lv2 | grep -F "file://$HOME/$1" ||
        { echo "the bundle does not lead to $1"; exit 1; }
}

install_for_user
is_at_home midi-quillo
is_at_home midi-quillo-jack
is_file .local/share/applications/midi-quillo-jack.desktop
is_file .local/share/icons/hicolor/scalable/apps/midi-quillo-jack.svg
is_file .local/share/midi-quillo/presets/echo.json
is_file .clap/midi-quillo.clap
is_file ".vst3/MIDI Quillo.vst3/Contents/$(uname -m)-linux/MIDI Quillo.so"
lv2ls | grep -x urn:midi-quillo:lv2
leads_to .local/share/doc/midi-quillo/guide/index.html
uninstall_for_user

export XDG_DATA_HOME="$HOME/my dàta & more"
install_for_user
leads_to "my%20d%C3%A0ta%20%26%20more/doc/midi-quillo/guide/index.html"
uninstall_for_user

left=$(find "$HOME" ! -type d -o -name '?*.lv2' -o -name '?*.vst3' -o -name midi-quillo)
[[ -z $left ]] || { printf 'left behind: %s\n' "$left"; exit 1; }
