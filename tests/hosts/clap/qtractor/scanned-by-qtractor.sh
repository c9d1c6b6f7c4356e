#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# scanned-by-qtractor.sh SCANNER PLUGIN: what the sequencer's scanner says of the plug-in.
set -euo pipefail
QT_QPA_PLATFORM=offscreen "$1" <<<"CLAP:$2"
