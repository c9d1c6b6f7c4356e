// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The C interfaces of LV2 that the plug-in speaks, and how atoms are laid out.
#include <cstddef>

#include <lv2/atom/atom.h>
#include <lv2/atom/util.h>
#include <lv2/core/lv2.h>
#include <lv2/midi/midi.h>
#include <lv2/state/state.h>
#include <lv2/time/time.h>
#include <lv2/urid/urid.h>

#include "platform/RealTime.hpp"

namespace quillo {

/// Where the next thing begins after so many bytes: atoms are laid out in units of eight.
[[nodiscard]] constexpr std::size_t lv2Padded(std::size_t size) QUILLO_REALTIME {
    return (size + 7U) & ~std::size_t{7U};
}

}  // namespace quillo
