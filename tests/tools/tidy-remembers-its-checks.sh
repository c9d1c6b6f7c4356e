#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# tidy-remembers-its-checks.sh: a source that was tidy is looked at again once the checks have changed, those
# of the tests as well.
set -euo pipefail

tools=$(realpath "$(dirname "$0")/../../tools")
desk=$(mktemp -d)
trap 'rm -rf "$desk"' EXIT
cd "$desk"
mkdir tools tests build-clang bin
cp "$tools/tidy-file.sh" tools
touch a.cpp .clang-tidy tests/.clang-tidy
echo "  \"command\": \"c++ -o a.o -c $PWD/a.cpp\"," >build-clang/compile_commands.json
printf '#!/bin/sh\necho "    ../a.cpp"\n' >bin/ninja
printf '#!/bin/sh\n[ "$1" = --version ] || echo looked >>looks\n' >bin/clang-tidy-22
chmod +x bin/*
export PATH=$PWD/bin:$PATH XDG_CACHE_HOME=$PWD/cache

# looks_after WANTED: tidies the source, which was then looked at so many times.
looks_after() {
    tools/tidy-file.sh "$PWD/a.cpp" >/dev/null
    (($(wc -l <looks) == $1)) || { echo "looked $(wc -l <looks) times, not $1"; exit 1; }
}

looks_after 1
looks_after 1
echo "Checks: '*'" >.clang-tidy
looks_after 2
echo "Checks: '-*'" >tests/.clang-tidy
looks_after 3
