// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/cli/RuleAdvice.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include "hosts/cli/EngineProbe.hpp"
#include "hosts/cli/NoteLedger.hpp"
#include "hosts/cli/OutputAdvice.hpp"
#include "hosts/cli/QuotedName.hpp"
#include "hosts/cli/RuleReach.hpp"
#include "hosts/cli/TellingEvents.hpp"
#include "hosts/cli/TriggerAdvice.hpp"

namespace quillo {

namespace {

void append(std::vector<Advice>& advice, std::vector<Advice> more) {
    advice.insert(advice.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

}  // namespace

std::vector<Advice> adviseOn(const std::vector<Rule>& rules) {
    EngineProbe probe(rules);
    RuleReach reach(probe);
    NoteLedger notes(rules.size());
    OutputCheck outputs(rules.size());
    tryTellingEvents(probe, [&](const Trial& trial) {
        reach.watch(trial);
        notes.watch(trial);
        outputs.watch(trial);
    });
    std::vector<Advice> advice;
    append(advice, adviseOnReach(rules, reach));
    append(advice, adviseOnTriggers(rules, reach));
    append(advice, adviseOnNotes(notes, rules.size()));
    append(advice, adviseOnOutputs(rules, outputs));
    std::ranges::stable_sort(advice, {}, &Advice::rule);
    return advice;
}

std::string adviceText(const std::vector<Rule>& rules, const Advice& advice) {
    constexpr std::size_t longestName = 60;
    const auto number = std::to_string(advice.rule + 1) + ". ";
    return number + quotedName(rules[advice.rule].name, longestName) + " " + advice.matter + ".\n" +
           std::string(number.size(), ' ') + advice.wayOut + "\n";
}

}  // namespace quillo
