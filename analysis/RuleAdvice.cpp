// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/RuleAdvice.hpp"

#include <algorithm>
#include <iterator>
#include <optional>

#include "analysis/NoteLedger.hpp"
#include "analysis/OutputAdvice.hpp"
#include "analysis/RuleReach.hpp"
#include "analysis/TriggerAdvice.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

using AdviceList = std::vector<Advice>;

void append(AdviceList& advice, AdviceList more) {
    std::ranges::move(more, std::back_inserter(advice));
}

/// A message that fires the rule, if there is one.
std::optional<TriggerBytes> triggerOf(const Rule& rule, std::size_t position, const RuleReach& reach) {
    if (rule.trigger.is<RuleTriggerV2::OnLoad>()) {
        return TriggerBytes{};
    }
    const auto event = reach.example(position);
    return event ? std::optional(event->bytes()) : std::nullopt;
}

}  // namespace

AdviceList adviseOn(const std::vector<Rule>& rules) {
    const RuleReach reach(rules);
    const NoteLedger notes(rules, reach);
    AdviceList advice;
    for (std::size_t rule = 0; rule < rules.size(); ++rule) {
        append(advice, adviseOnTrigger(rules, rule, reach));
        append(advice, adviseOnNotes(rule, notes));
        append(advice, adviseOnOutput(rules[rule].output, rule, triggerOf(rules[rule], rule, reach)));
    }
    return advice;
}

std::string adviceText(const std::vector<Rule>& rules, const Advice& advice) {
    constexpr std::size_t longestName = 60;
    const auto number = std::to_string(advice.rule + 1) + ". ";
    return number + inQuotes(rules[advice.rule].name, longestName) + " " + advice.matter + ".\n" +
           std::string(number.size(), ' ') + advice.wayOut + "\n";
}

}  // namespace quillo
