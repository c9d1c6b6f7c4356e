// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The C interfaces of LV2 that the plug-in speaks.
#include <lv2/atom/atom.h>
#include <lv2/atom/util.h>
#include <lv2/core/lv2.h>
#include <lv2/midi/midi.h>
#include <lv2/state/state.h>
#include <lv2/time/time.h>
#include <lv2/urid/urid.h>
