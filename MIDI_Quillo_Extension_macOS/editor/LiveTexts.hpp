// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "session/QuilloModel.hpp"

namespace quillo {

/// How often a rule fired and when last, as its card says it: "1,204 × · 2 s ago", "37 × · now", "never fired
/// since load". What is less than a second ago is now; times are rounded down to the greatest unit.
[[nodiscard]] std::string hitsText(const RuleHits& hits);

/// How long a delayed output still waits, in at most six characters: "0.08 s", "12.3 s", "125 s", "45 min",
/// "3 h", "12 d". Rounded down.
[[nodiscard]] std::string timeToGo(double seconds);

/// The bytes of its messages: "93 4a 50", "b0 00 00, c0 30".
[[nodiscard]] std::string waitingBytes(const WaitingOutput& output);

/// All that is said of it: "0.08 s 93 4a 50 Echo", without a name where the rule has none.
[[nodiscard]] std::string waitingText(const WaitingOutput& output);

}  // namespace quillo
