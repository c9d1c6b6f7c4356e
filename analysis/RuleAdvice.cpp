// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/RuleAdvice.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>
#include <utility>

#include "analysis/Finders.hpp"
#include "platform/QuotedText.hpp"
#include "rules/RuleRun.hpp"

namespace quillo {

namespace {

using AdviceList = std::vector<Advice>;

constexpr std::array ofAnyRule{&findNeverFires, &findImpossibleNumber, &findSwallowsAllMIDI,
                               &findBadSystemExclusive, &findTooLongForVST3};

constexpr std::array ofRulesThatFire{
    &findNotInVST3,    &findHangingNotes,   &findSwallowedNoteEnds, &findIncompleteOutput,
    &findSilentNoteOn, &findRestartsNotes,  &findDoublesNotes,      &findKeepsPedalDown,
    &findKeepsBend,    &findSendsTwice,     &findBankTooLate,       &findProgramUndone,
    &findStartOnly,    &findTearsFineValue, &findTearsParameter,    &findTearsMPE};

void ask(std::span<Finder* const> finders, const AdvisedRules& list, std::size_t rule, AdviceList& advice) {
    for (auto* const finder : finders) {
        if (auto found = finder(list, rule)) {
            advice.push_back(*std::move(found));
        }
    }
}

/// Adds what is said of one rule of a run to what was said of the rule above it, where both are said the same
/// thing.
void addToRun(AdviceList& advice, AdviceList more) {
    for (auto& piece : more) {
        const auto same = std::ranges::find_if(advice, [&](const Advice& said) {
            return said.kind == piece.kind && said.rule + said.count == piece.rule;
        });
        if (same == advice.end()) {
            advice.push_back(std::move(piece));
        } else {
            ++same->count;
        }
    }
}

}  // namespace

AdviceList adviseOn(const std::vector<Rule>& rules) {
    const AdvisedRules list(rules);
    AdviceList advice;
    for (const auto& run : runsOf(rules)) {
        AdviceList ofRun;
        for (auto rule = run.first; rule < run.first + run.count; ++rule) {
            AdviceList ofRule;
            ask(ofAnyRule, list, rule, ofRule);
            if (list.reach().canFire(rule)) {
                ask(ofRulesThatFire, list, rule, ofRule);
            }
            addToRun(ofRun, std::move(ofRule));
        }
        std::ranges::move(ofRun, std::back_inserter(advice));
    }
    return advice;
}

std::string adviceText(const std::vector<Rule>& rules, const Advice& advice) {
    constexpr std::size_t longestName = 60;
    const bool isRun = advice.count > 1;
    auto number = std::to_string(advice.rule + 1);
    if (isRun) {
        number.append(1, '-').append(std::to_string(advice.rule + advice.count));
    }
    number += ". ";
    return number + inQuotes(rules[advice.rule].name, longestName) +
           (isRun ? ", each like the first, " : " ") + advice.matter + ".\n" +
           std::string(number.size(), ' ') + advice.wayOut + "\n";
}

}  // namespace quillo
