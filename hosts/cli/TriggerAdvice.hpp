// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "hosts/cli/RuleAdvice.hpp"
#include "hosts/cli/RuleReach.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// On rules that can never fire.
[[nodiscard]] std::vector<Advice> adviseOnReach(const std::vector<Rule>& rules, const RuleReach& reach);

/// On what rules wait for and what they do with the rest: numbers that no message carries, host rules that
/// swallow all MIDI, and messages that do not come in a VST3 host.
[[nodiscard]] std::vector<Advice> adviseOnTriggers(const std::vector<Rule>& rules, const RuleReach& reach);

}  // namespace quillo
