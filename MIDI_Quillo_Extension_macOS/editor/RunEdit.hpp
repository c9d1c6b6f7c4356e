// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

#include "editor/RuleListHistory.hpp"
#include "rules/RuleEntry.hpp"
#include "rules/RuleRun.hpp"

/// What a card does to its rules: one, or the rules of a run. Each function returns what takes their place;
/// what was there keeps its identity, the first rule always.
namespace quillo {

/// Whether each rule of these sends a value that is higher by one than that of the rule before it.
[[nodiscard]] bool isRising(const RuleList& run);

/// How far what a rule sends lies above what it waits for; a value that it has not counts as 0.
[[nodiscard]] int offsetOf(const RuleEntry& entry);

/// Whether a rule can wait for a range: it has a value to wait for, and does not consume what does not match.
[[nodiscard]] bool canHaveRange(const RuleTriggerEntry& trigger);

/// The change that makes `first` of the first rule, made to each rule of the run. A run that is to wait for
/// one value, or for any, becomes one rule.
[[nodiscard]] RuleList edited(const RuleList& run, const RuleEntry& first);

/// The same with another kind of trigger. What the rules wait for goes along where that has values too.
[[nodiscard]] RuleList withTriggerType(const RuleList& run, TriggerEntryType type);

/// The same with another kind of message. Fields keep what they hold, but for choices that the trigger cannot
/// feed.
[[nodiscard]] RuleList withOutputType(const RuleList& run, OutputEntryType type);

/// The rules that send this controller with the value 0, also where what they sent rose.
[[nodiscard]] RuleList sendingZero(const RuleList& run, std::uint8_t controller);

/// Whether the card that begins with this rule can wait for the values `from` to `to`, 0 to 127 each, the
/// lower one first: what it sends, where that rises, must not leave 0 to 127.
[[nodiscard]] bool canWaitFor(const RuleEntry& first, bool rises, int from, int to);

/// The rules that wait for all values `from` to `to`, in either order. What is sent keeps its distance from
/// them where it rises. The same rules where that cannot be.
[[nodiscard]] RuleList withRange(const RuleList& run, std::uint8_t from, std::uint8_t to);

/// Whether the run of so many rules that begins with this one can send what it waits for and `offset` more:
/// it must have a value to send, which must not leave 0 to 127.
[[nodiscard]] bool canTranspose(const RuleEntry& first, std::size_t count, int offset);

/// The rules that do so. The same rules where that cannot be.
[[nodiscard]] RuleList transposed(const RuleList& run, int offset);

/// The rules whose message has this in the field that may rise, the same in all.
[[nodiscard]] RuleList sendingAlike(const RuleList& run, const GenericByteV2& value);

}  // namespace quillo
