// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "rules/Rule.hpp"

namespace quillo {

/// Consecutive rules of a list that differ in nothing but the value that they wait for (the note, the
/// controller's value or the program), which rises by one from rule to rule: "notes C1 to B1". They have one
/// name, and pass their event through or consume what matches. Their message is the same in all; or its own
/// value (the note, the controller's value or the program that is sent) rises along: a transposition.
///
/// A run is nothing that is stored: the rules are, one by one.
struct RuleRun {
    std::size_t first = 0;  ///< its first rule's position in the list
    std::size_t count = 1;
    bool rises = false;  ///< the message's value rises along

    bool operator==(const RuleRun&) const = default;
};

/// The list as runs, from its first rule to its last, each as long as it can be; one rule by itself is a run
/// too.
[[nodiscard]] std::vector<RuleRun> runsOf(std::span<const Rule> rules);

/// What a rule of a run waits for: 0 to 127. Nothing for a rule that can be in no run with another: one that
/// waits for any value or has none, that consumes what does not match, or that is no entry of the editor's.
[[nodiscard]] std::optional<std::uint8_t> runValue(const Rule& rule);

/// The rule that follows in a run. Nothing behind value 127, where the message has no value that rises, and
/// for a rule that can be in no run.
[[nodiscard]] std::optional<Rule> nextInRun(const Rule& rule, bool rises);

}  // namespace quillo
