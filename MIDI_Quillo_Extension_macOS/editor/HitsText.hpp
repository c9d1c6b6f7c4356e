// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "session/RuleHits.hpp"

namespace quillo {

/// How often a rule fired and when last, as its card says it: "1,204 × · 2 s ago", "37 × · now", "never fired
/// since load". What is less than a second ago is now; times are rounded down to the greatest unit.
[[nodiscard]] std::string hitsText(const RuleHits& hits);

}  // namespace quillo
