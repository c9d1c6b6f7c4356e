// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/AdvisedRules.hpp"

#include <algorithm>
#include <map>
#include <tuple>

namespace quillo {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t resetControllers = 121;
constexpr std::uint8_t parameterNumber = 100;
constexpr std::uint8_t firstValueOfDown = 64;

Bytes systemExclusiveOf(const RuleOutputV2& output) {
    const auto* exclusive = output.message.getIf<RuleOutputVariantsV2::SystemExclusive>();
    return exclusive == nullptr ? Bytes() : exclusive->body;
}

bool hasBytes(const Bytes& body, std::size_t at, const Bytes& expected) {
    return body.size() >= at + expected.size() &&
           std::equal(expected.begin(), expected.end(), body.begin() + static_cast<std::ptrdiff_t>(at));
}

/// General MIDI System On and Off, GS Reset and XG System On, for any device.
bool isReset(const Bytes& body) {
    return (hasBytes(body, 0, {0x7E}) && hasBytes(body, 2, {0x09})) ||
           (hasBytes(body, 0, {0x41}) && hasBytes(body, 2, {0x42, 0x12, 0x40, 0x00, 0x7F})) ||
           (hasBytes(body, 0, {0x43}) && hasBytes(body, 2, {0x4C, 0x00, 0x00, 0x7E}));
}

}  // namespace

AdvisedRules::AdvisedRules(const std::vector<Rule>& rules)
    : rules_(rules), reach_(rules), notes_(rules, reach_) {
    for (std::size_t rule = 0; rule < rules.size(); ++rule) {
        noteTrigger(rule);
        if (!reach_.canFire(rule)) {
            continue;
        }
        for (const auto& message : sentBy(rules_[rule].output)) {
            noteSent({rule, message});
        }
        noteReset(rule);
    }
    findTwins();
}

void AdvisedRules::noteTrigger(std::size_t rule) {
    const auto& box = reach_.box(rule);
    if (box.isEmpty()) {
        return;
    }
    kinds_.set(static_cast<std::size_t>(box.kind()));
    if (box.kind() == EventKind::controlChange) {
        controllers_.set(*box.number());
        knowsMPE_ = knowsMPE_ || (box.number() == parameterNumber && box.value() == 6);
    }
}

void AdvisedRules::noteSent(const Sender& sender) {
    const auto& message = sender.message;
    if (message.kind == StatusV2::programChange) {
        programs_.push_back(sender);
    } else if (message.kind == StatusV2::CC) {
        noteController(sender);
    } else if (message.kind == StatusV2::pitchWheel && message.data1.value_or(0) == 0 &&
               message.data2.value_or(64) == 64) {
        centredBends_ |= channelsOf(sender.rule, message);
    }
}

/// A controller number that is copied is the one that comes, which a rule for a controller knows.
void AdvisedRules::noteController(const Sender& sender) {
    const auto& [rule, message] = sender;
    const auto channels = channelsOf(rule, message);
    const auto controller = message.data1 ? message.data1 : reach_.box(rule).number();
    if (controller == resetControllers) {
        std::ranges::for_each(pedalUps_, [&](Channels& ups) { ups |= channels; });
        centredBends_ |= channels;
    }
    if (controller) {
        controllers_.set(*controller);
        knowsMPE_ = knowsMPE_ || (controller == parameterNumber && message.data2 == 6);
        const auto value = message.data2.value_or(reach_.box(rule).value().value_or(0));
        pedalUps_.at(*controller) |= value < firstValueOfDown ? channels : Channels{0};
    }
}

void AdvisedRules::noteReset(std::size_t rule) {
    if (isReset(systemExclusiveOf(rules_[rule].output))) {
        resets_.push_back(rule);
        centredBends_ = 0xFFFF;
    }
}

void AdvisedRules::findTwins() {
    std::map<std::tuple<bool, EventBox, std::vector<SentMessage>, Bytes, SampleTime>, std::size_t> firsts;
    for (std::size_t rule = 0; rule < rules_.size(); ++rule) {
        const auto& [trigger, output] = std::tie(rules_[rule].trigger, rules_[rule].output);
        const auto found = firsts.try_emplace({trigger.is<RuleTriggerV2::OnLoad>(), reach_.box(rule),
                                               sentBy(output), systemExclusiveOf(output), output.delay.ms},
                                              rule);
        const auto first = found.first->second;
        const bool isTwin = first != rule && rules_[first].output == output;
        twins_.push_back(isTwin ? std::optional(first) : std::nullopt);
    }
}

AdvisedRules::Channels AdvisedRules::channelsOf(std::size_t rule, const SentMessage& message) const {
    return message.channel ? static_cast<Channels>(1U << *message.channel) : reach_.box(rule).channels();
}

bool AdvisedRules::fireTogether(std::size_t one, std::size_t other) const {
    const auto isOnLoad = [&](std::size_t rule) { return rules_[rule].trigger.is<RuleTriggerV2::OnLoad>(); };
    if (isOnLoad(one) || isOnLoad(other)) {
        return isOnLoad(one) && isOnLoad(other);
    }
    return EventBox::common(reach_.box(one), reach_.box(other)).any([&](const Event& event) {
        return reach_.fires(std::max(one, other), event);
    });
}

}  // namespace quillo
