// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "editor/Binding.hpp"
#include "editor/FieldPlan.hpp"
#include "editor/Palette.hpp"
#include "editor/RunBinding.hpp"
#include "rules/MIDIRuleType.hpp"
#include "rules/RuleEntry.hpp"

namespace quillo {

/// The fields of the trigger section for the trigger's type, in order. Picking a type calls
/// `onTriggerTypeChange` and writes nothing itself. A run is never offered to consume what does not match.
[[nodiscard]] FieldPlans triggerFields(const Binding<RuleEntry>& rule, const RunBinding& run,
                                       const Palette& palette,
                                       const std::function<void(TriggerEntryType)>& onTriggerTypeChange);

/// The fields of the message section for the output's type, in order. "From Trigger" is offered exactly where
/// the rule's trigger can feed the field. Picking a type calls `onOutputTypeChange` and writes nothing
/// itself.
[[nodiscard]] FieldPlans outputFields(const Binding<RuleEntry>& rule, const RunBinding& run,
                                      const Palette& palette,
                                      const std::function<void(const MIDIRuleType&)>& onOutputTypeChange);

}  // namespace quillo
