#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# scan-for-ardour.sh BUNDLE: has Ardour's scanner load a VST3 plug-in and let it go again, and looks at what
# it has seen: the class, with one MIDI port each way.
set -euo pipefail
export LD_LIBRARY_PATH=/usr/lib/ardour7 ARDOUR_DLL_PATH=/usr/lib/ardour7
export ARDOUR_DATA_PATH=/usr/share/ardour7 ARDOUR_CONFIG_PATH=/etc/ardour7
said=$(/usr/lib/ardour7/ardour-vst3-scanner -v -f "$1" 2>&1) || { echo "$said"; exit 1; }
echo "$said"
grep -q 'uid="ABCDEF019182FAEB51756C6F51756C6C".* n_midi_inputs="1" n_midi_outputs="1"' <<<"$said"
