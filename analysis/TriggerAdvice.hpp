// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <vector>

#include "analysis/RuleAdvice.hpp"
#include "analysis/RuleReach.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// On what a rule waits for and what it does with the rest: whether it can fire at all, numbers that no message
/// carries, a host rule that swallows all MIDI, and messages that do not come in a VST3 host.
[[nodiscard]] std::vector<Advice> adviseOnTrigger(const std::vector<Rule>& rules, std::size_t rule,
                                                  const RuleReach& reach);

}  // namespace quillo
