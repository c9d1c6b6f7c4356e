// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "analysis/AskedEvent.hpp"
#include "analysis/EventExplanation.hpp"
#include "analysis/RuleReason.hpp"
#include "rules/Rule.hpp"
#include "rules/RuleShelf.hpp"

namespace quillo {

/// The reason of each rule of an explained list, in order. Rules are numbered among those of the shelf.
[[nodiscard]] std::vector<RuleReason> ruleReasons(const std::vector<Rule>& rules, const AskedEvent& event,
                                                  const EventExplanation& explanation,
                                                  const RuleShelf& shelf = {});

/// The reason of a rule that is switched off.
[[nodiscard]] RuleReason switchedOff();

/// The same for rules that the engine is yet to be asked about, those that are switched off among them.
/// Throws the `FatalError` of rules that no unit can install.
[[nodiscard]] std::vector<RuleReason> why(const std::vector<Rule>& rules, const AskedEvent& event,
                                          const RuleShelf& shelf = {});

}  // namespace quillo
