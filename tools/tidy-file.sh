#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# tools/tidy-file.sh SOURCE: runs clang-tidy over one source of build-clang. A source that passed is not
# looked at again until it, a header of ours that it includes, its compile command, the checks or clang-tidy
# change; clones in other folders share that memory.
set -euo pipefail
cd "$(dirname "$0")/.."

source=$1
memory=${XDG_CACHE_HOME:-$HOME/.cache}/midi-quillo/tidy

compile_command() {
    sed -n 's/^ *"command": "\(.*\)",\{0,1\}$/\1/p' build-clang/compile_commands.json |
        grep -F -- " -c $source" | head -n 1
}

# The source and our headers that the last build saw it include; fails when it has not been built.
own_dependencies() {
    local object
    object=$(compile_command | sed -n 's/.* -o \([^ ]*\).*/\1/p')
    ninja -C build-clang -t deps "$object" | sed -n 's/^    //p' | (cd build-clang && xargs -r realpath --) |
        grep "^$PWD/" | LC_ALL=C sort -u | grep .
}

# Everything that decides whether the source is tidy, in one checksum without this clone's folder in it.
fingerprint() {
    local files
    files=$(own_dependencies) || return 1
    {
        clang-tidy-22 --version
        compile_command
        xargs -d '\n' sha256sum .clang-tidy tests/.clang-tidy <<<"$files"
    } | sed "s|$PWD||g" | sha256sum | cut -d ' ' -f 1
}

key=$(fingerprint) || key=
if [[ -n $key && -e $memory/$key ]]; then
    exit 0
fi
echo "${source#"$PWD"/}"
if ! output=$(clang-tidy-22 --quiet -p build-clang "$source" 2>&1); then
    printf '%s\n' "$output"
    exit 1
fi
if [[ -n $key ]]; then
    mkdir -p "$memory"
    touch "$memory/$key"
fi
