# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# The build trees: one a preset. Sourced by ./dev, from the repository's folder.

export QUILLO_JOBS=${QUILLO_JOBS:-$(nproc)}

# Clones in other folders find what this one has compiled.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=time_macros,pch_defines

# tree_of PRESET: the folder it builds in.
tree_of() {
    case $1 in
        release | bench) echo build ;;
        *) echo "build-$1" ;;
    esac
}

# build_tree PRESET [TARGET]: builds the target, or everything.
build_tree() {
    configure "$1" && compile "$@"
}

compile() {
    say "building ${2:-everything}, preset $1"
    cmake --build --preset "$1" --parallel "$QUILLO_JOBS" ${2:+--target "$2"}
}

# configure PRESET: runs CMake, unless nothing that it looks for has changed since it last ran.
configure() {
    local tree stamp now
    tree=$(tree_of "$1")
    stamp=$tree/.configured-$1
    now=$(cksum CMakePresets.json && installed_versions)
    if [[ -e $tree/build.ninja && -e $stamp && $(<"$stamp") == "$now" ]]; then
        return
    fi
    say "configuring, preset $1"
    # Where nothing is installed from here, CMake says what it goes without.
    cmake --preset "$1" --log-level="$(has_debian_tools && echo NOTICE || echo STATUS)" || return
    printf '%s\n' "$now" >"$stamp"
}
