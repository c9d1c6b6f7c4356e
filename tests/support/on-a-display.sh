#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# on-a-display.sh [--bare] PROGRAM ...: runs the program on a display of its own, which nobody sees and which
# shows windows as large as they are, whatever the user's own display does. No window manager has taught this
# display the words that windows speak; it learns them here, with `--bare` none. The exit status is the
# program's.
set -euo pipefail

words=(WM_PROTOCOLS WM_TAKE_FOCUS WM_DELETE_WINDOW WM_CHANGE_STATE WM_STATE _NET_WM_PING
    _NET_WM_WINDOW_TYPE _NET_WM_WINDOW_TYPE_NORMAL _NET_WM_STATE _NET_WM_STATE_HIDDEN)
if [[ ${1-} == --bare ]]; then
    words=()
    shift
fi

# Prints the display's number when the server takes clients, and nothing when it cannot, as where the number
# is taken. They start at 100: a program that is told of no display tries the first one.
serve() {
    exec setpriv --pdeathsig TERM Xvfb ":$1" -displayfd 1 -screen 0 1280x1024x24 -noreset -nolisten tcp \
        2>"$said"
}

said=$(mktemp)
trap 'rm -f "$said"' EXIT
for ((number = 100; number < 200; ++number)); do
    exec {ready}< <(serve "$number")
    server=$!
    if read -r <&"$ready"; then
        break
    fi
    exec {ready}<&-
done
if ((number == 200)); then
    echo "Xvfb does not start:"
    cat "$said"
    exit 1
fi
trap 'rm -f "$said"; kill "$server" || true' EXIT

unset GDK_SCALE GDK_DPI_SCALE GTK_THEME NSM_URL XAUTHORITY
export DISPLAY=:$number
for word in "${words[@]}"; do
    xprop -root -format "$word" 8s -set "$word" known
done
setpriv --pdeathsig TERM "$@" {ready}<&-
