// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "rules/RuleEntry.hpp"

/// Ranges and transpositions as the editor shows them, and as they are typed.
namespace quillo {

/// Whether a trigger waits for a note.
[[nodiscard]] bool waitsForNotes(TriggerEntryType type);

/// A value as a card with this trigger names it: "C1" where it is a note, else "36".
[[nodiscard]] std::string valueText(TriggerEntryType type, std::uint8_t value);

/// The values that so many rules wait for, of which this is the first: "C1 – B1" or "64 – 127".
[[nodiscard]] std::string rangeText(const RuleEntry& first, std::size_t count);

/// What the rules send compared with what they wait for: "From Trigger + 12" or "From Trigger − 5".
[[nodiscard]] std::string offsetText(int offset);

/// A value that was typed: a number, 0 to 127, or a note such as "c#1" where the trigger waits for notes.
[[nodiscard]] std::optional<std::uint8_t> typedValue(TriggerEntryType type, std::string_view text);

/// A range that was typed: two values and a dash, "c1-b1" or "64 - 127", the lower one first or last.
[[nodiscard]] std::optional<std::pair<std::uint8_t, std::uint8_t>> typedRange(TriggerEntryType type,
                                                                              std::string_view text);

/// A transposition that was typed: a sign and a number, "+12" or "- 5"; at most 127.
[[nodiscard]] std::optional<int> typedOffset(std::string_view text);

}  // namespace quillo
