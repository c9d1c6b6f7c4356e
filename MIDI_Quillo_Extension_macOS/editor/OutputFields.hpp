// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "editor/Binding.hpp"
#include "editor/FieldPlan.hpp"
#include "editor/Palette.hpp"
#include "rules/MIDIRuleType.hpp"
#include "rules/RuleEntry.hpp"

namespace quillo {

/// The fields of the message section for the output's type, in order. "From Trigger" is offered exactly where a
/// trigger of `triggerType` can feed the field. Picking a type calls `onOutputTypeChange` and writes nothing
/// itself.
[[nodiscard]] FieldPlans outputFields(const Binding<RuleOutputEntry>& data, TriggerEntryType triggerType,
                                      const Palette& palette,
                                      const std::function<void(const MIDIRuleType&)>& onOutputTypeChange);

}  // namespace quillo
