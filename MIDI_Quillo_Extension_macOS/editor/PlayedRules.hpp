// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <vector>

#include "session/RuleHits.hpp"

namespace quillo {

/// How long before the newest hit a rule may have fired to count as played.
inline constexpr double playedWithin = 2;

/// The positions of the rules that react to what is played, or was played last: that fired within two seconds
/// before the newest hit of all. Nothing where no rule has fired.
[[nodiscard]] std::vector<std::size_t> playedRules(const std::vector<RuleHits>& hits);

}  // namespace quillo
