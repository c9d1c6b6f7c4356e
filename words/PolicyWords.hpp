// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "rules/Rule.hpp"
#include "rules/RuleShelf.hpp"

namespace quillo {

/// A rule's policy; none for an on-load rule.
[[nodiscard]] std::optional<PassThroughV2> policyOf(const RuleTriggerV2& trigger);

/// The policy as the editor's menu has it: "Consume matching".
[[nodiscard]] std::string policyWords(PassThroughV2 policy);

/// A rule as others speak of it: `rule 2 "Split"`, without a name the number alone. The position counts from
/// 0, the number shown from 1, and those that are switched off count where they are given.
[[nodiscard]] std::string ruleWords(const std::vector<Rule>& rules, std::size_t position,
                                    const RuleShelf& shelf = {});

/// The same with its policy: `rule 2 "Split" (Consume matching)`.
[[nodiscard]] std::string ruleAndPolicyWords(const std::vector<Rule>& rules, std::size_t position);

}  // namespace quillo
