// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "editor/Binding.hpp"
#include "editor/FieldPlan.hpp"
#include "editor/Palette.hpp"
#include "editor/RunBinding.hpp"
#include "rules/RuleEntry.hpp"

namespace quillo {

/// The fields of the trigger section for the trigger's type, in order. Picking a type calls
/// `onTriggerTypeChange` and writes nothing itself. A run is never offered to consume what does not match.
[[nodiscard]] FieldPlans triggerFields(const Binding<RuleEntry>& rule, const RunBinding& run,
                                       const Palette& palette,
                                       const std::function<void(TriggerEntryType)>& onTriggerTypeChange);

}  // namespace quillo
