#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# on-a-display.sh PROGRAM: runs the program on a display of its own, which nobody sees and which shows windows
# as large as they are, whatever the user's own display does. No window manager has
# taught this display the words that windows speak; it learns them here.
set -euo pipefail

if [[ ${1-} != --inside ]]; then
    exec xvfb-run --auto-servernum --server-args='-screen 0 1280x1024x24 -noreset' "$0" --inside "$@"
fi
shift
unset GDK_SCALE GDK_DPI_SCALE GTK_THEME NSM_URL
for word in WM_PROTOCOLS WM_TAKE_FOCUS WM_DELETE_WINDOW WM_CHANGE_STATE WM_STATE _NET_WM_PING \
    _NET_WM_WINDOW_TYPE _NET_WM_WINDOW_TYPE_NORMAL _NET_WM_STATE _NET_WM_STATE_HIDDEN; do
    xprop -root -format "$word" 8s -set "$word" known
done
exec "$@"
