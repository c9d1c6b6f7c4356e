// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ChannelChange.hpp"

#include "rules/TriggerChoices.hpp"

namespace quillo {

std::optional<ChannelChange> channelChange(const RuleEntry& before, const RuleEntry& after) {
    ChannelChange change;
    if (!(before.trigger.channel == after.trigger.channel)) {
        change.trigger = after.trigger.channel;
    }
    if (!(before.output.channel == after.output.channel)) {
        change.output = after.output.channel;
    }
    auto onChannels = before;
    onChannels.trigger.channel = after.trigger.channel;
    onChannels.output.channel = after.output.channel;
    return change == ChannelChange() || !(onChannels == after) ? std::nullopt : std::optional(change);
}

RuleEntry changed(RuleEntry entry, const ChannelChange& change) {
    const bool triggerHasChannel = triggerChoices(entry.trigger.type).channel;
    if (change.trigger && triggerHasChannel) {
        entry.trigger.channel = *change.trigger;
    }
    const bool copies = change.output && change.output->is<RuleOutputChannelV2::TriggerChannel>();
    if (change.output && hasChannel(entry.output.type) && (triggerHasChannel || !copies)) {
        entry.output.channel = *change.output;
    }
    return entry;
}

}  // namespace quillo
