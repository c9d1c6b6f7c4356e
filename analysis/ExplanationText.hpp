// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "analysis/AskedEvent.hpp"
#include "analysis/EventExplanation.hpp"
#include "rules/Rule.hpp"
#include "rules/RuleShelf.hpp"

namespace quillo {

/// An explanation for a musician: the event, for each rule its `RuleReason` and what it sent, in aligned
/// columns, and what became of the event:
///
///     90 3c 64: note-on 60 (C3), velocity 100, channel 1
///       1  "Only the pedal"  consumed it  it waits for CC, this is a Note On
///                                         Consume non-matching: the event did not match this rule
///       2  "Echo"            not reached  rule 1 "Only the pedal" consumed it
///     Result: swallowed by rule 1 "Only the pedal" (Consume non-matching). Nothing goes out.
///
/// Rules that are switched off stand in their places, without a number.
[[nodiscard]] std::string explanationText(const std::vector<Rule>& rules, const AskedEvent& event,
                                          const EventExplanation& explanation, const RuleShelf& shelf = {});

}  // namespace quillo
