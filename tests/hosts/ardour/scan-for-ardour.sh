#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# scan-for-ardour.sh BUNDLE: has Ardour's scanner load a VST3 plug-in, and says what it has seen.
set -euo pipefail
export LD_LIBRARY_PATH=/usr/lib/ardour7 ARDOUR_DLL_PATH=/usr/lib/ardour7
export ARDOUR_DATA_PATH=/usr/share/ardour7 ARDOUR_CONFIG_PATH=/etc/ardour7
exec /usr/lib/ardour7/ardour-vst3-scanner -v -f "$1"
