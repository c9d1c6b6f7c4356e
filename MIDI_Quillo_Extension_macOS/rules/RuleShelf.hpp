// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "rules/Rule.hpp"

namespace quillo {

/// A rule that is switched off: it is kept with the list and does not run. Its place is how
/// many of those stand before it, so an older program that keeps only the rules that run moves none of them.
struct ShelvedRule {
    std::uint32_t place = 0;
    Rule rule;

    bool operator==(const ShelvedRule&) const = default;
};

/// The rules of a list that are switched off, in its order: no place is before that of the one in front, and
/// none behind the end of the rules that run.
using RuleShelf = std::vector<ShelvedRule>;

/// Calls `visit(rule, isOff)` for every rule of a list in its order, those that run and those that are
/// switched off.
template <class Visit>
void visitInOrder(std::span<const Rule> rules, std::span<const ShelvedRule> shelf, const Visit& visit) {
    auto shelved = shelf.begin();
    for (std::size_t place = 0; place <= rules.size(); ++place) {
        for (; shelved != shelf.end() && shelved->place <= place; ++shelved) {
            visit(shelved->rule, true);
        }
        if (place < rules.size()) {
            visit(rules[place], false);
        }
    }
}

/// The position of a rule that runs among all rules of the list.
[[nodiscard]] inline std::size_t positionInList(std::size_t place, std::span<const ShelvedRule> shelf) {
    const auto isBefore = [place](const ShelvedRule& shelved) { return shelved.place <= place; };
    return place + static_cast<std::size_t>(std::ranges::count_if(shelf, isBefore));
}

}  // namespace quillo
