// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "editor/Binding.hpp"
#include "editor/FieldPlan.hpp"
#include "editor/Palette.hpp"
#include "rules/RuleEntry.hpp"

namespace quillo {

/// The fields of the trigger section for the trigger's type, in order. Picking a type calls
/// `onTriggerTypeChange` and writes nothing itself.
[[nodiscard]] FieldPlans triggerFields(const Binding<RuleTriggerEntry>& data, const Palette& palette,
                                       const std::function<void(TriggerEntryType)>& onTriggerTypeChange);

}  // namespace quillo
