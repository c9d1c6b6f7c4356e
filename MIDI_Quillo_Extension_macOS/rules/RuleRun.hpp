// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "rules/Rule.hpp"
#include "rules/RuleEntry.hpp"

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

/// The field of a trigger in which a rule of a run waits for its value; null where there is no such field.
[[nodiscard]] TriggerValueV2 RuleTriggerEntry::* comparedField(TriggerEntryType type);

/// The field of a message that may rise along; null where the message has no such field.
[[nodiscard]] GenericByteV2 RuleOutputEntry::* risingField(OutputEntryType type);

/// The data byte that an entry waits for, and that it sends in the field that may rise; nothing where there
/// is no such field, and none such value in it.
[[nodiscard]] std::optional<std::uint8_t> comparedValue(const RuleEntry& entry);
[[nodiscard]] std::optional<std::uint8_t> sentValue(const RuleEntry& entry);

/// How a rule goes on with the one above it: in no run, in one whose message is the same in all rules, or in
/// one whose message rises.
enum class RunLink : std::uint8_t { none, same, rising };
[[nodiscard]] RunLink linkBetween(const RuleEntry& above, const RuleEntry& below);

}  // namespace quillo
