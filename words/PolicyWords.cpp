// SPDX-License-Identifier: GPL-3.0-or-later
#include "words/PolicyWords.hpp"

#include <algorithm>

#include "platform/QuotedText.hpp"
#include "rules/MIDIVocabulary.hpp"

namespace quillo {

std::optional<PassThroughV2> policyOf(const RuleTriggerV2& trigger) {
    if (const auto* message = trigger.getIf<RuleTriggerV2::MessageBased>()) {
        return message->trigger.passTrough;
    }
    const auto* host = trigger.getIf<RuleTriggerV2::HostTransport>();
    return host == nullptr ? std::nullopt : std::optional(host->trigger.passThrough);
}

std::string policyWords(PassThroughV2 policy) {
    return std::ranges::find(passThroughMenu(), policy, &MenuItem<PassThroughV2>::value)->label;
}

std::string ruleWords(const std::vector<Rule>& rules, std::size_t position, const RuleShelf& shelf) {
    constexpr std::size_t longestName = 40;
    const auto& name = rules[position].name;
    auto words = "rule " + std::to_string(positionInList(position, shelf) + 1);
    return name.empty() ? words : words + ' ' + inQuotes(name, longestName);
}

std::string ruleAndPolicyWords(const std::vector<Rule>& rules, std::size_t position) {
    const auto policy = policyOf(rules[position].trigger);
    return ruleWords(rules, position) + (policy ? " (" + policyWords(*policy) + ")" : "");
}

}  // namespace quillo
