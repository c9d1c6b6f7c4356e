// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/cli/RuleReach.hpp"

#include <variant>

namespace quillo {

void RuleReach::watch(const Trial& trial) {
    for (const auto& firing : trial.outcome.firings) {
        fires_[firing.rule] = true;
    }
    if (const auto consumer = trial.outcome.consumer) {
        consumptions_.push_back({trial.event, *consumer});
    }
}

std::set<std::size_t> RuleReach::blockers(std::size_t rule) const {
    std::set<std::size_t> blockers;
    for (const auto& [event, consumer] : consumptions_) {
        if (!blockers.contains(consumer) && waitsFor(rule, event)) {
            blockers.insert(consumer);
        }
    }
    return blockers;
}

bool RuleReach::waitsFor(std::size_t rule, const AskedEvent& event) const {
    if (const auto* message = std::get_if<MIDIMessage>(&event)) {
        return probe_.waitsFor(rule, message->bytes());
    }
    const auto* change = std::get_if<HostTransportTriggerVariantsV2>(&event);
    return change != nullptr && probe_.waitsFor(rule, *change);
}

}  // namespace quillo
