// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/RuleReasons.hpp"

#include <string>

#include "analysis/FailureWords.hpp"
#include "words/PolicyWords.hpp"

namespace quillo {

namespace {

std::string delayWords(SampleTime milliseconds) {
    return milliseconds == 0 ? " at once" : " after " + std::to_string(milliseconds) + " ms";
}

/// "sent b0 00 00, c0 30 at once".
std::string sentWords(const RuleAccount& account) {
    std::string words;
    for (const auto& message : account.messages) {
        words += (words.empty() ? "sent " : ", ") + shownBytes(message);
    }
    return words + delayWords(account.delay);
}

RuleReason reasonOf(const std::vector<Rule>& rules, std::size_t rule, const AskedEvent& event,
                    const EventExplanation& explanation) {
    using Verdict = RuleAccount::Verdict;
    const auto& account = explanation.rules[rule];
    const auto& trigger = rules[rule].trigger;
    const bool consumed = explanation.consumer == rule;
    switch (account.verdict) {
    case Verdict::fires:
        return {"fired", sentWords(account) + (consumed ? ", and consumed it" : ""), true, consumed};
    case Verdict::fails:
        return {consumed ? "consumed it" : "passed over", failureWords(trigger, account.failure, event),
                false, consumed};
    case Verdict::neverTried:
        return {"not reached", ruleWords(rules, *explanation.consumer) + " consumed it"};
    case Verdict::standsAside: break;
    }
    return {"not asked", asideWords(trigger, event)};
}

}  // namespace

std::vector<RuleReason> ruleReasons(const std::vector<Rule>& rules, const AskedEvent& event,
                                    const EventExplanation& explanation) {
    std::vector<RuleReason> reasons;
    reasons.reserve(rules.size());
    for (std::size_t rule = 0; rule < rules.size(); ++rule) {
        reasons.push_back(reasonOf(rules, rule, event, explanation));
    }
    return reasons;
}

RuleReason switchedOff() {
    return {"switched off", ""};
}

std::vector<RuleReason> why(const std::vector<Rule>& rules, const AskedEvent& event, const RuleShelf& shelf) {
    EngineProbe probe(rules);
    const auto running = ruleReasons(rules, event, explain(probe, event));
    std::vector<RuleReason> reasons;
    reasons.reserve(rules.size() + shelf.size());
    auto next = running.begin();
    visitInOrder(rules, shelf, [&](const Rule& /*rule*/, bool isOff) {
        reasons.push_back(isOff ? switchedOff() : *next++);
    });
    return reasons;
}

}  // namespace quillo
