#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# on-a-display.sh [--bare] PROGRAM ...: runs the program on a display of its own, which nobody sees and which
# shows windows as large as they are, whatever the user's own display does. No window manager has taught this
# display the words that windows speak; it learns them here, unless it shall stay bare. Ends as the program
# does.
set -euo pipefail

words=(WM_PROTOCOLS WM_TAKE_FOCUS WM_DELETE_WINDOW WM_CHANGE_STATE WM_STATE _NET_WM_PING
    _NET_WM_WINDOW_TYPE _NET_WM_WINDOW_TYPE_NORMAL _NET_WM_STATE _NET_WM_STATE_HIDDEN)
if [[ ${1-} == --bare ]]; then
    words=()
    shift
fi

# Says the number of a server when it is ready, and nothing when another one has that number. Low ones are
# what programs try that are told of no display.
serve() {
    exec setpriv --pdeathsig TERM Xvfb ":$1" -displayfd 1 -screen 0 1280x1024x24 -noreset -nolisten tcp \
        2>/dev/null
}

for ((number = 100; number < 200; ++number)); do
    exec {ready}< <(serve "$number")
    server=$!
    if read -r <&"$ready"; then
        break
    fi
    exec {ready}<&-
done
if ((number == 200)); then
    echo "Xvfb does not start"
    exit 1
fi
trap 'kill "$server" || true' EXIT

unset GDK_SCALE GDK_DPI_SCALE GTK_THEME NSM_URL XAUTHORITY
export DISPLAY=:$number
for word in "${words[@]}"; do
    xprop -root -format "$word" 8s -set "$word" known
done
"$@" {ready}<&-
