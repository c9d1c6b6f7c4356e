// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hosts/clap/CLAPHeaders.hpp"

namespace quillo {

/// The state is the state document, byte for byte what a preset file holds. What cannot be read leaves the rules
/// as they are, and the editor's user is told why.
[[nodiscard]] const clap_plugin_state_t& clapState();

}  // namespace quillo
