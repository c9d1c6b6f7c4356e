#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# without-debian-tools.sh: where nothing can be installed from here, ./dev says what is needed, and CMake
# looks again each time, for nobody else sees what has been installed meanwhile.
set -euo pipefail

source=$(realpath "$(dirname "$0")/../..")
desk=$(mktemp -d)
trap 'rm -rf "$desk"' EXIT
cd "$desk"
echo '{}' >CMakePresets.json
export PATH=$desk:$PATH

say() { echo "$*" >>said; }
source "$source/tools/packages.sh"
source "$source/tools/build.sh"
has_debian_tools() { return 1; }
for program in $(programs_of build) cmake; do
    printf '#!/bin/sh\necho "$@" >>"%s/ran"\nmkdir -p build\ntouch build/build.ninja\n' "$desk" >"$program"
    chmod +x "$program"
done

need build editor
grep -q 'juce-modules-source' said || { echo "it does not say what the editor needs"; exit 1; }
configure release
configure release
(($(grep -c -e '--preset release --log-level=STATUS' ran) == 2)) || { cat ran; exit 1; }
