// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

#include "hosts/clap/CLAPHeaders.hpp"

namespace quillo {

/// The editor in a window that the host gives, of the X Window System. Windows of the plug-in's own are not
/// made.
[[nodiscard]] const clap_plugin_gui_t& clapGUI();

/// By which a host's timer keeps the editor going.
[[nodiscard]] const clap_plugin_timer_support_t& clapTimerSupport();

/// The state is the state document, byte for byte what a preset file holds. What cannot be read leaves the
/// rules as they are, and the editor shows why.
[[nodiscard]] const clap_plugin_state_t& clapState();

}  // namespace quillo
