// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "analysis/AskedEvent.hpp"
#include "engine/TriggerPattern.hpp"
#include "rules/RuleTriggerV2.hpp"

namespace quillo {

/// Why a trigger that was tried does not match the event, by the first condition that fails: "it waits for
/// channel 3, this is channel 1". Kinds are called what the editor's menus call them. A message is complete.
[[nodiscard]] std::string failureWords(const RuleTriggerV2& trigger, TriggerCondition failure,
                                       const AskedEvent& event);

/// Why a rule is not asked about the event at all: "it fires only when the plug-in is loaded".
[[nodiscard]] std::string asideWords(const RuleTriggerV2& trigger, const AskedEvent& event);

}  // namespace quillo
