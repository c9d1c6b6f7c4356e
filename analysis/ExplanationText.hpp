// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "analysis/AskedEvent.hpp"
#include "analysis/EventExplanation.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// An explanation for a musician: the event, a line or more for each rule in aligned columns, and what became
/// of the event:
///
///     90 3c 64: note-on 60 (C3), velocity 100, channel 1
///       1  "Only the pedal"  no match     waits for a controller; this is a note-on
///                            stops here   Consume non-matching: it did not match
///       2  "Echo"            never tried  rule 1 stopped the event
///     Result: swallowed by rule 1 "Only the pedal" (Consume non-matching). Nothing goes out.
[[nodiscard]] std::string explanationText(const std::vector<Rule>& rules, const AskedEvent& event,
                                          const EventExplanation& explanation);

}  // namespace quillo
