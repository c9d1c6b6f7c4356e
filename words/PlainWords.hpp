// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "persistence/PluginData.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// What a rule does, in one line of English:
///
///     "Mod wheel to volume": when controller 1 (Modulation) with any value arrives on any channel (consume
///     matching), send controller 7 (Volume) with the trigger's value on the trigger's channel after 250 ms.
///
/// Channels are counted from 1, everything else is the number in the message; notes and controllers have
/// their names beside it. A number that no MIDI message can carry is marked "(out of range)". Whatever in the
/// name would break the line or the quotes is escaped as in JSON.
[[nodiscard]] std::string inPlainWords(const Rule& rule);

/// The rule's parts: "when note-on 60 (C3) arrives on channel 1 (pass through)" and "send note-off 60 (C3)
/// with velocity 0 on channel 1 at once". What an output takes from its trigger is called by its name in that
/// trigger: the second data byte of a note is "the trigger's velocity", that of a controller "the trigger's
/// value".
[[nodiscard]] std::string inPlainWords(const RuleTriggerV2& trigger);
[[nodiscard]] std::string inPlainWords(const RuleOutputV2& output, const RuleTriggerV2& trigger);

/// How many rules a document holds: "1 rule", or "3 rules, 1 switched off", which the 3 do not count.
[[nodiscard]] std::string countInPlainWords(const PluginData& data);

}  // namespace quillo
