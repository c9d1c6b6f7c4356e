// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "session/WaitingOutput.hpp"

namespace quillo {

/// How long a delayed output still waits, in at most six characters: "0.08 s", "12.3 s", "125 s", "45 min",
/// "3 h", "12 d". Rounded down.
[[nodiscard]] std::string timeToGo(double seconds);

/// The bytes of its messages: "93 4a 50", "b0 00 00, c0 30".
[[nodiscard]] std::string waitingBytes(const WaitingOutput& output);

/// All that is said of it: "0.08 s 93 4a 50 Echo", without a name where the rule has none.
[[nodiscard]] std::string waitingText(const WaitingOutput& output);

}  // namespace quillo
