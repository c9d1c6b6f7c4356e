#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# no-package-of-a-broken-build.sh: what does not build is not packed, not even as it was built before.
set -euo pipefail

source=$(realpath "$(dirname "$0")/../..")
desk=$(mktemp -d)
trap 'rm -rf "$desk"' EXIT
cd "$desk"
source "$source/tools/package.sh"

need() { :; }
say() { echo "$*" >>said; }
build_tree() { return 1; }
if make_packages; then
    echo "it succeeds"
    exit 1
fi
[[ ! -e said ]] || { cat said; exit 1; }
