// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "rules/RuleEntry.hpp"

namespace quillo {

/// Another channel for triggers, for messages, or for both: a change that can be made to any rules at once.
struct ChannelChange {
    std::optional<TriggerValueV2> trigger;
    std::optional<RuleOutputChannelV2> output;

    bool operator==(const ChannelChange&) const = default;
};

/// The channels by which two entries differ; nothing when they differ in anything else, or not at all.
[[nodiscard]] std::optional<ChannelChange> channelChange(const RuleEntry& before, const RuleEntry& after);

/// The entry on these channels. One that has no channel keeps what it holds, and so does a message whose
/// trigger has none to copy.
[[nodiscard]] RuleEntry changed(RuleEntry entry, const ChannelChange& change);

}  // namespace quillo
