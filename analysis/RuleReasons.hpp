// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "analysis/AskedEvent.hpp"
#include "analysis/EventExplanation.hpp"
#include "analysis/RuleReason.hpp"
#include "rules/Rule.hpp"
#include "rules/RuleShelf.hpp"

namespace quillo {

/// The reason of each rule of an explained list, in order.
[[nodiscard]] std::vector<RuleReason> ruleReasons(const std::vector<Rule>& rules, const AskedEvent& event,
                                                  const EventExplanation& explanation);

/// The reason of a rule that is switched off.
[[nodiscard]] RuleReason switchedOff();

/// The same for rules that the engine is yet to be asked about, those that are switched off among them.
/// Throws the `FatalError` of rules that no unit can install.
[[nodiscard]] std::vector<RuleReason> why(const std::vector<Rule>& rules, const AskedEvent& event,
                                          const RuleShelf& shelf = {});

}  // namespace quillo
