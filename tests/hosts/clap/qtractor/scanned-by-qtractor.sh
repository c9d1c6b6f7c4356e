#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# scanned-by-qtractor.sh SCANNER PLUGIN: has the sequencer's scanner load the plug-in and let it go again, and
# looks at what it says of it: no audio, one MIDI port each way, with or without an editor.
set -euo pipefail
said=$(QT_QPA_PLATFORM=offscreen "$1" <<<"CLAP:$2") || { echo "$said"; exit 1; }
echo "$said"
grep -qE '^CLAP\|MIDI Quillo\|0:0\|1:1\|0:0\|(GUI,)?EXT,RT\|' <<<"$said"
