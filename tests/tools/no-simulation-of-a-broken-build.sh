#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# no-simulation-of-a-broken-build.sh: a simulator that does not build is not run as it was built before, not
# even where its failure is told later.
set -euo pipefail

source=$(realpath "$(dirname "$0")/../..")
desk=$(mktemp -d)
trap 'rm -rf "$desk"' EXIT
cd "$desk"
source <(sed -n '/^simulate() {$/,/^}$/p' "$source/dev")

mkdir build
printf '#!/bin/sh\necho it ran\n' >build/quillo-simulate
chmod +x build/quillo-simulate
need() { :; }
build_tree() { return 1; }
QUILLO_JOBS=1
status=0
simulate >said || status=1
((status == 1)) || { echo "it succeeds"; exit 1; }
[[ ! -s said ]] || { cat said; exit 1; }
