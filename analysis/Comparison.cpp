// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/Comparison.hpp"

#include <algorithm>
#include <deque>
#include <map>
#include <string>
#include <utility>

#include "persistence/JSONWriter.hpp"
#include "persistence/RuleDescriptions.hpp"

namespace quillo {

namespace {

/// What leaves because of the event; counts the rules that fire.
std::vector<Departure> answer(const EngineProbe& probe, const AskedEvent& event,
                              std::vector<std::size_t>& hits) {
    const auto outcome = probe.put(event);
    for (const auto& firing : outcome.firings) {
        ++hits[firing.rule];
    }
    return departures(outcome, event);
}

bool isSameToTheEar(const Departure& one, const Departure& other) {
    return one.time == other.time && one.message == other.message;
}

/// Pairs the rules of `second` that have no partner yet with those of `first` of the same key.
template <class KeyOf>
void pairBy(KeyOf keyOf, const std::vector<Rule>& first, const std::vector<Rule>& second,
            std::vector<bool>& isTaken, std::vector<RulePair>& pairs) {
    std::map<std::string, std::deque<std::size_t>> free;
    for (std::size_t position = 0; position < first.size(); ++position) {
        if (!isTaken[position]) {
            free[keyOf(first[position])].push_back(position);
        }
    }
    for (std::size_t position = 0; position < second.size(); ++position) {
        auto& partner = pairs[position].first;
        auto& candidates = free[keyOf(second[position])];
        if (!partner && !candidates.empty()) {
            partner = candidates.front();
            isTaken[*partner] = true;
            candidates.pop_front();
        }
    }
}

}  // namespace

Comparison compare(const EngineProbe& first, const EngineProbe& second, std::span<const AskedEvent> events) {
    Comparison comparison{
        {}, std::vector<std::size_t>(first.rules().size()), std::vector<std::size_t>(second.rules().size())};
    for (std::size_t event = 0; event < events.size(); ++event) {
        auto before = answer(first, events[event], comparison.firstHits);
        auto after = answer(second, events[event], comparison.secondHits);
        if (!std::ranges::equal(before, after, isSameToTheEar)) {
            comparison.differences.push_back({event, std::move(before), std::move(after)});
        }
    }
    return comparison;
}

std::vector<RulePair> paired(const std::vector<Rule>& first, const std::vector<Rule>& second) {
    std::vector<RulePair> pairs;
    pairs.reserve(second.size());
    for (std::size_t position = 0; position < second.size(); ++position) {
        pairs.push_back({std::nullopt, position});
    }
    std::vector<bool> isTaken(first.size());
    pairBy([](const Rule& rule) { return encode(rule); }, first, second, isTaken, pairs);
    pairBy([](const Rule& rule) { return rule.name; }, first, second, isTaken, pairs);
    for (std::size_t position = 0; position < first.size(); ++position) {
        if (!isTaken[position]) {
            pairs.push_back({position, std::nullopt});
        }
    }
    return pairs;
}

}  // namespace quillo
