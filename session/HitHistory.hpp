// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/CompiledRules.hpp"
#include "engine/SampleTime.hpp"
#include "persistence/PluginData.hpp"
#include "rules/Rule.hpp"
#include "rules/RuleShelf.hpp"
#include "session/RuleHits.hpp"

namespace quillo {

/// The hits of a list's rules, handed on from each list to the one that takes its place. One thread at a
/// time.
class HitHistory {
public:
    /// A time on a render timeline with so many samples a second.
    struct Moment {
        SampleTime time = 0;
        std::uint64_t sampleRate = 1;
    };

    /// An edited list has replaced `before`, which no longer counts, and what was switched off
    /// beside it: rules that are the same keep their hits, also when they were moved, renamed or switched off
    /// or on, and those that are new or were changed have none.
    void follow(const CompiledRules& before, const RuleShelf& shelfBefore, const PluginData& after,
                Moment now);

    /// A list has been loaded: none of its rules has fired.
    void forget();

    /// The hits of all rules of the list that runs.
    [[nodiscard]] std::vector<RuleHits> hits(const CompiledRules& running, Moment now) const;

private:
    [[nodiscard]] std::vector<RuleHits> allHits(const CompiledRules& running, const RuleShelf& shelf,
                                                Moment now) const;

    std::vector<RuleHits> before_;  ///< what the rules have from earlier lists; empty when they have nothing
    std::vector<RuleHits> off_;     ///< the same of those that are switched off
    Moment since_;                  ///< when that was: the list took their place
};

/// The rules of a list in its order, those that run and those that are switched off; they must outlive it.
using ListedRules = std::vector<const Rule*>;

inline constexpr std::size_t noPlace = SIZE_MAX;

/// For each rule of an edited list its place in the list before, `noPlace` when it was not there; no two
/// rules have the same. Rules are the same when they are equal, or else when nothing but their names differs.
/// Where lists of thousands of rules have little in common, not every pair is compared, and a rule may not be
/// found.
[[nodiscard]] std::vector<std::size_t> placesBefore(const ListedRules& before, const ListedRules& after);

}  // namespace quillo
