#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# installed.sh BUILD: what an installation leaves is what a desktop needs to find the program.
set -euo pipefail

place=$(mktemp -d)
manifest=$1/install_manifest.txt

# The list of what is installed for good, perhaps root's, is as it was in the end.
restore() {
    rm -f "$manifest"
    [[ ! -e $place/manifest ]] || mv "$place/manifest" "$manifest"
    rm -rf "$place"
}
trap restore EXIT
[[ ! -e $manifest ]] || mv "$manifest" "$place/manifest"
cmake --install "$1" --prefix "$place" >/dev/null

must_be_there() {
    if [[ ! -s $place/$1 ]]; then
        echo "not installed: $1"
        exit 1
    fi
}

# value KEY: what the desktop entry says.
value() {
    sed -n "s/^$1=//p" "$place/share/applications/midi-quillo-jack.desktop"
}

must_be_there share/applications/midi-quillo-jack.desktop
must_be_there "bin/$(value Exec)"
must_be_there "bin/$(value X-NSM-Exec)"
must_be_there "share/icons/hicolor/scalable/apps/$(value Icon).svg"
must_be_there "share/icons/hicolor/32x32/apps/$(value Icon).png"
must_be_there "share/icons/hicolor/128x128/apps/$(value Icon).png"
for program in midi-quillo midi-quillo-jack; do
    must_be_there "bin/$program"
    must_be_there "share/man/man1/$program.1"
    "$place/bin/$program" --version
done
