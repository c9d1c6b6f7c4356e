// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/Binding.hpp"
#include "editor/MenuExtras.hpp"
#include "editor/RunBinding.hpp"
#include "rules/RuleEntry.hpp"

/// What the fields of a card offer because it stands for a run, or may become one.
namespace quillo {

/// Of the field that holds the value that is waited for: it shows the range, and offers "Range …" at the end
/// of its menu; "c1-b1" can be typed. Nothing where the rule cannot wait for a range.
[[nodiscard]] MenuExtras rangeExtras(const Binding<RuleEntry>& rule, const RunBinding& run);

/// Of the field of the message that may rise: it shows "From Trigger + 12" where it does, and offers "From
/// Trigger + …", behind "From Trigger" if that is offered; "+12" can be typed. Nothing for a single rule.
[[nodiscard]] MenuExtras offsetExtras(const Binding<RuleEntry>& rule, const RunBinding& run,
                                      bool offersTrigger);

}  // namespace quillo
