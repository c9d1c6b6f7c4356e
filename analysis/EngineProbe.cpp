// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/EngineProbe.hpp"

#include <algorithm>
#include <array>

#include "engine/MessageContent.hpp"
#include "engine/RuleCompiler.hpp"
#include "midi/Status.hpp"
#include "rules/TaggedUnion.hpp"

namespace quillo {

namespace {

/// As a host hands them over: zeros behind a shorter message.
TriggerBytes triggerBytes(std::span<const std::uint8_t> message) {
    std::array<std::uint8_t, 3> bytes{};
    std::ranges::copy(message.first(std::min(message.size(), bytes.size())), bytes.begin());
    return {bytes[0], bytes[1], bytes[2]};
}

std::vector<MIDIMessage> messagesIn(const MessageList& list) {
    const auto messages = list.messages();
    return {messages.begin(), messages.end()};
}

std::vector<MIDIMessage> sentBy(const MIDIRuleInternal& rule, const TriggerBytes& trigger) {
    using Part = RuleInternalPartVariants;
    const auto* host = rule.variants.getIf<Part::WithHostBasedTrigger>();
    return host != nullptr ? messagesIn(host->part.output)
                           : messagesIn(messagesOf(
                                 rule.variants.getIf<Part::WithMessageBasedTrigger>()->part.output, trigger));
}

}  // namespace

EngineProbe::EngineProbe(const std::vector<Rule>& rules, std::uint64_t sampleRate)
    : compiled_(compileRules(rules, sampleRate)) {
    for (const auto& rule : rules) {
        const auto* message = rule.trigger.getIf<RuleTriggerV2::MessageBased>();
        patterns_.push_back(message == nullptr ? std::nullopt
                                               : std::optional(TriggerPattern(message->trigger.variants)));
    }
}

EngineProbe::Outcome EngineProbe::put(std::span<const std::uint8_t> message) const {
    const auto trigger = triggerBytes(message);
    auto result = outcome({compiled_, trigger}, trigger);
    result.forwarded = !result.consumer;
    return result;
}

EngineProbe::Outcome EngineProbe::put(HostTransportTriggerVariantsV2 change) const {
    return outcome({compiled_, change}, {});
}

EngineProbe::Outcome EngineProbe::putLoading() const {
    Outcome outcome;
    for (const auto& rule : compiled_.rulesOnLoad) {
        outcome.firings.push_back({rule.place, rule.delay, messagesIn(rule.output)});
    }
    return outcome;
}

EngineProbe::Outcome EngineProbe::put(const AskedEvent& event) const {
    return std::visit(Overloaded{
                          [this](const MIDIMessage& message) {
                              return midi::isSystemExclusive(message.bytes()) ? Outcome{}
                                                                              : put(message.bytes());
                          },
                          [this](HostTransportTriggerVariantsV2 change) { return put(change); },
                          [this](PluginLoad) { return putLoading(); },
                      },
                      event);
}

EngineProbe::Outcome EngineProbe::outcome(RuleChain chain, const TriggerBytes& trigger) const {
    Outcome outcome;
    while (const auto* rule = chain.next()) {
        outcome.firings.push_back({rule->place, rule->delay, sentBy(*rule, trigger)});
    }
    if (chain.consumed()) {
        outcome.consumer = compiled_.rulesInternal[chain.consumer()].place;
    }
    return outcome;
}

std::optional<TriggerCondition> EngineProbe::firstFailure(std::size_t rule,
                                                          std::span<const std::uint8_t> message) const {
    const auto& pattern = patterns_[rule];
    return pattern ? pattern->firstFailure(triggerBytes(message)) : std::nullopt;
}

}  // namespace quillo
