#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# manuals-fit-a-screen.sh MAKE-GUIDE MANUAL...: sets each manual, and that of the guide, on a screen of 80
# columns. A warning fails it: a reader would see it above the page.
set -euo pipefail

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$1" "$folder" 1.0
for manual in "${@:2}" "$folder/midi-quillo-guide.7"; do
    warnings=$(groff -k -t -man -Tutf8 -rLL=78n -z "$manual" 2>&1)
    if [[ -n $warnings ]]; then
        printf '%s:\n%s\n' "$manual" "$warnings"
        exit 1
    fi
done
