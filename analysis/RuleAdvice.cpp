// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/RuleAdvice.hpp"

#include <algorithm>
#include <iterator>

#include "analysis/EngineProbe.hpp"
#include "analysis/NoteLedger.hpp"
#include "analysis/OutputAdvice.hpp"
#include "analysis/RuleReach.hpp"
#include "analysis/TellingEvents.hpp"
#include "analysis/TriggerAdvice.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

using AdviceList = std::vector<Advice>;

void append(AdviceList& advice, AdviceList more) {
    std::ranges::move(more, std::back_inserter(advice));
}

}  // namespace

AdviceList adviseOn(const std::vector<Rule>& rules) {
    EngineProbe probe(rules);
    RuleReach reach(probe);
    NoteLedger notes(rules.size());
    OutputCheck outputs(rules.size());
    tryTellingEvents(probe, [&](const Trial& trial) {
        reach.watch(trial);
        if (canArrive(trial.event)) {
            notes.watch(trial);
            outputs.watch(trial);
        }
    });
    AdviceList advice;
    for (std::size_t rule = 0; rule < rules.size(); ++rule) {
        append(advice, adviseOnTrigger(rules, rule, reach));
        append(advice, adviseOnNotes(rule, notes));
        append(advice, adviseOnOutput(rules[rule].output, rule, outputs));
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
