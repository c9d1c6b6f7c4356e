// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "analysis/AskedEvent.hpp"
#include "analysis/EventExplanation.hpp"
#include "analysis/RuleReason.hpp"
#include "engine/TriggerPattern.hpp"
#include "rules/Rule.hpp"
#include "rules/RuleShelf.hpp"
#include "rules/RuleTriggerV2.hpp"

namespace quillo {

/// Why a trigger that was tried does not match the event, by the first condition that fails: "it waits for
/// channel 3, this is channel 1". Kinds are called what the editor's menus call them. A message is complete.
[[nodiscard]] std::string failureWords(const RuleTriggerV2& trigger, TriggerCondition failure,
                                       const AskedEvent& event);

/// Why a rule is not asked about the event at all: "it fires only when the plug-in is loaded".
[[nodiscard]] std::string asideWords(const RuleTriggerV2& trigger, const AskedEvent& event);

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
