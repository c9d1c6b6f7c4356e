// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

#include "scriptedhost/ScriptAction.hpp"

namespace quillo {

/// Reads the action of one script line: an object whose key "do" names it. Keys that the action does not know
/// are ignored. Throws a `DecodingError` for a line that is no action, with a key missing, of the wrong type
/// or out of range, or with keys that contradict each other.
[[nodiscard]] ScriptAction parseScriptAction(std::string_view line);

}  // namespace quillo
