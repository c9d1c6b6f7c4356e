#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# lint-sees-long-lines.sh LINT: `lines_fit` of the checks names each line beyond column 110, comments too, in
# every language, and no line that ends there, whatever its bytes.
set -euo pipefail
# shellcheck source=tools/lint.sh
source "$1"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir engine

# line FILE BEGINNING COLUMNS: a line that is so long, in a file that begins with another.
line() {
    local text=$2
    while ((${#text} < $3)); do
        text+=♪
    done
    printf 'short\n%s\n' "$text" >"$1"
}

export LC_ALL=C.UTF-8
line engine/Fits.cpp '    /// ' 110
lines_fit || { echo "a line of 110 columns is too long for it"; exit 1; }
found=0
for file in engine/Header.hpp engine/CMakeLists.txt Find.cmake tool.py tool.sh tool.awk dev; do
    line "$file" '# // ' 111
    if ! lines_fit >found && grep -q "^$file:2:" found; then
        found=$((found + 1))
    else
        echo "the long line in $file is not found"
    fi
    rm "$file"
done
((found == 7))
