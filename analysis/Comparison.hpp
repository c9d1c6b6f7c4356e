// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "analysis/EngineProbe.hpp"
#include "analysis/Performance.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// What two lists of rules make of the same events: what an edit changes, for instance, or which of two
/// presets to take.
///
///     EngineProbe before(oldRules);
///     EngineProbe now(newRules);
///     const auto comparison = compare(before, now, events);
struct Comparison {
    /// An event because of which something else leaves, or at another time, or in another order.
    struct Difference {
        std::size_t event = 0;  ///< its position among the events
        std::vector<Departure> first;
        std::vector<Departure> second;
    };

    std::vector<Difference> differences;  ///< in the order of the events
    std::vector<std::size_t> firstHits;   ///< how often each rule of the first list fired
    std::vector<std::size_t> secondHits;  ///< and each of the second
};

[[nodiscard]] Comparison compare(const EngineProbe& first, const EngineProbe& second,
                                 std::span<const AskedEvent> events);

/// A rule of two lists: its positions in them, one of which may be missing.
struct RulePair {
    std::optional<std::size_t> first;
    std::optional<std::size_t> second;

    bool operator==(const RulePair&) const = default;
};

/// Which rules of two lists are the same one: those that are equal, and of the others those with the same
/// name, both in their order. In the order of the second list; those of the first alone come last.
[[nodiscard]] std::vector<RulePair> paired(const std::vector<Rule>& first, const std::vector<Rule>& second);

}  // namespace quillo
