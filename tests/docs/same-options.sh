#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# same-options.sh PAGE PROGRAM [VERB...]: a man page and what the program says of itself must name the same
# options. With verbs, the program's help is `PROGRAM help VERB` for each; otherwise `PROGRAM --help`.
set -euo pipefail

page=$1
program=$2
shift 2

help() {
    if (($# == 0)); then
        "$program" --help
    else
        "$program" help
        for verb in "$@"; do "$program" help "$verb"; done
    fi
}

options() {
    sed 's/\\-/-/g' | grep -oE -e '--[a-z][a-z-]*[a-z]' | LC_ALL=C sort -u
}

if ! difference=$(diff <(options <"$page") <(help "$@" | options)); then
    printf '%s (<) and the help of %s (>) name other options:\n%s\n' "$page" "$program" "$difference"
    exit 1
fi
