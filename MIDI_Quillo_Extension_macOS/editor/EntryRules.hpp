// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "log/EventLogEntry.hpp"
#include "rules/RuleEntry.hpp"

namespace quillo {

/// The trigger that waits for exactly this event: its channel, its note, its controller with its value, its
/// program. Nothing for an event that no rule can wait for.
[[nodiscard]] std::optional<RuleTriggerEntry> triggerFor(const EventLogEntryVariants& event);

/// What a rule sends to send exactly this message at once; but a program change brings its bank 0 along.
/// Nothing for a message that no rule can send.
[[nodiscard]] std::optional<RuleOutputEntry> outputFor(const EventLogEntryVariants& event);

}  // namespace quillo
