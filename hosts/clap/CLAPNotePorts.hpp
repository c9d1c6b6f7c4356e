// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hosts/clap/CLAPHeaders.hpp"

namespace quillo {

/// One port each way, both for MIDI; the input takes note events as well.
[[nodiscard]] const clap_plugin_note_ports_t& clapNotePorts();

}  // namespace quillo
