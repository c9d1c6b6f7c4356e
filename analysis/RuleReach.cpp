// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/RuleReach.hpp"

#include <algorithm>
#include <variant>

#include "words/PolicyWords.hpp"

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

std::set<std::size_t> RuleReach::inTheWay(std::size_t rule) const {
    const auto first = *blockers(rule).begin();
    const auto consumption = std::ranges::find_if(consumptions_, [&](const Consumption& found) {
        return found.consumer == first && waitsFor(rule, found.event);
    });
    std::set<std::size_t> inTheWay;
    for (std::size_t above = first; above < rule; ++above) {
        if (consumes(above, consumption->event)) {
            inTheWay.insert(above);
        }
    }
    return inTheWay;
}

bool RuleReach::canMove(std::size_t rule, std::size_t place) const {
    auto order = probe_.rules();
    if (policyOf(order[rule].trigger) == PassThroughV2::PassThrough) {
        return true;
    }
    const auto at = [&](std::size_t position) {
        return order.begin() + static_cast<std::ptrdiff_t>(position);
    };
    std::rotate(at(place), at(rule), at(rule + 1));
    EngineProbe probe(order);
    RuleReach moved(probe);
    tryTellingEvents(probe, [&](const Trial& trial) { moved.watch(trial); });
    auto fired = fires_;
    std::rotate(fired.begin() + static_cast<std::ptrdiff_t>(place),
                fired.begin() + static_cast<std::ptrdiff_t>(rule),
                fired.begin() + static_cast<std::ptrdiff_t>(rule + 1));
    return std::ranges::equal(fired, moved.fires_, [](bool before, bool after) { return after || !before; });
}

bool RuleReach::consumes(std::size_t rule, const AskedEvent& event) const {
    const auto policy = policyOf(probe_.rules()[rule].trigger);
    return policy == (waitsFor(rule, event) ? PassThroughV2::EatMatching : PassThroughV2::EatNonMatching);
}

bool RuleReach::waitsFor(std::size_t rule, const AskedEvent& event) const {
    if (const auto* message = std::get_if<MIDIMessage>(&event)) {
        return probe_.waitsFor(rule, message->bytes());
    }
    const auto* change = std::get_if<HostTransportTriggerVariantsV2>(&event);
    return change != nullptr && probe_.waitsFor(rule, *change);
}

}  // namespace quillo
