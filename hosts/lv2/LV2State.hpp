// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hosts/lv2/LV2Headers.hpp"

namespace quillo {

/// The state is one property, a string: the state document, byte for byte what a preset file holds. A string
/// of LV2 ends with a zero byte that belongs to its size and not to the document; one without it is taken
/// too.
///
/// What cannot be read leaves the rules as they are, and the editor's user is told why. A host that has no
/// such property has nothing to restore: it is answered `LV2_STATE_ERR_NO_PROPERTY`, and nobody is told.
/// Rules may be restored while the audio thread runs, from any thread.
[[nodiscard]] const LV2_State_Interface& lv2State();

}  // namespace quillo
