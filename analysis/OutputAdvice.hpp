// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "analysis/NoteLedger.hpp"
#include "analysis/RuleAdvice.hpp"
#include "engine/Generator.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// On a note that the rule starts and leaves, and on one whose end it swallows.
[[nodiscard]] std::vector<Advice> adviseOnNotes(std::size_t rule, const NoteLedger& notes);

/// On system-exclusive bytes and how many they are, and on messages that are not complete. The trigger is a
/// message that fires the rule; none for a rule that can never fire.
[[nodiscard]] std::vector<Advice> adviseOnOutput(const RuleOutputV2& output, std::size_t rule,
                                                 const std::optional<TriggerBytes>& trigger);

}  // namespace quillo
