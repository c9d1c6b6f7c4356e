#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# source-twice.sh: two clones of a commit, their files made at different times and under different masks, make
# the same archive of the sources; the recipes beside it name its version and checksum.
set -euo pipefail

source=$(realpath "$(dirname "$0")/../..")
desk=$(mktemp -d)
trap 'rm -rf "$desk"' EXIT

# Nothing is installed here, and nobody is told where things are.
need() { :; }
say() { :; }
source "$source/tools/package.sh"

# The clone that is cloned may be another user's.
printf '[safe]\n\tdirectory = *\n' >"$desk/gitconfig"

# source_of CLONE MASK
source_of() (
    umask "$2"
    GIT_CONFIG_GLOBAL=$desk/gitconfig git clone --quiet --no-hardlinks "$source" "$desk/$1"
    cd "$desk/$1"
    touch --date "@$2" CHANGELOG.md
    make_source >/dev/null
)

source_of first 002
source_of second 007
diff --recursive "$desk/first/build/source" "$desk/second/build/source"

cd "$desk/first/build/source"
archive=$(echo midi-quillo-*.tar.gz)
sum=$(sha256sum "$archive")
for recipe in PKGBUILD midi-quillo.nix ./*.yaml; do
    grep -q -e "${sum%% *}" "$recipe" || { echo "$recipe: another checksum"; exit 1; }
    ! grep -n '@[A-Z0-9]*@' "$recipe" || { echo "$recipe: not filled in"; exit 1; }
done
bash -n PKGBUILD
tar --list --file "$archive" >"$desk/names"
grep -qx "${archive%.tar.gz}/GPL-3" "$desk/names" || { echo "the text of the licence is not in it"; exit 1; }
