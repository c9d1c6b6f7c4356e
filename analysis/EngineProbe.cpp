// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/EngineProbe.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "engine/RuleCompiler.hpp"
#include "midi/Status.hpp"
#include "platform/RealTimeFunction.hpp"
#include "rules/TaggedUnion.hpp"

namespace quillo {

namespace {

constexpr SampleTime start = 0;
/// Later than any delay that can be compiled.
constexpr SampleTime end = std::numeric_limits<SampleTime>::max();

using EventBytes = std::array<std::uint8_t, 3>;

/// The first three bytes, as a host hands them over: zeros behind a shorter message.
EventBytes eventBytes(std::span<const std::uint8_t> message) {
    EventBytes bytes{};
    std::ranges::copy(message.first(std::min(message.size(), bytes.size())), bytes.begin());
    return bytes;
}

TriggerBytes triggerBytes(std::span<const std::uint8_t> message) {
    const auto bytes = eventBytes(message);
    return {bytes[0], bytes[1], bytes[2]};
}

void install(RuleProcessor& processor, const std::vector<Rule>& rules, std::uint64_t sampleRate) {
    processor.sampleRate = sampleRate;
    processor.setRules(rules);
}

/// Runs one step of a processor and returns the calls of its output function.
template <class Emissions, class Step>
Emissions emissionsOf(Step step) {
    Emissions emissions;
    WithoutDeadline keep([&](SampleTime time, std::uint8_t, std::span<const MIDIMessage> messages) {
        emissions.push_back({time, {messages.begin(), messages.end()}});
        return noErr;
    });
    step(OutputFunction(keep));
    return emissions;
}

}  // namespace

EngineProbe::EngineProbe(const std::vector<Rule>& rules, std::uint64_t sampleRate)
    : sampleRate_(sampleRate), compiled_(compileRules(rules, sampleRate)) {
    install(processor_, rules, sampleRate);
    for (std::size_t position = 0; position < rules.size(); ++position) {
        const auto& trigger = rules[position].trigger;
        const bool isOnLoad = trigger.is<RuleTriggerV2::OnLoad>();
        (isOnLoad ? onLoadPositions_ : positions_).push_back(position);
        const auto* message = trigger.getIf<RuleTriggerV2::MessageBased>();
        patterns_.push_back(message == nullptr ? std::nullopt
                                               : std::optional(TriggerPattern(message->trigger.variants)));
    }
}

EngineProbe::Outcome EngineProbe::put(std::span<const std::uint8_t> message) {
    auto emissions = emissionsOf<Emissions>([&](const OutputFunction& output) {
        processor_.processMIDIEvent(output, start, eventBytes(message), message.size(), end);
    });
    return outcome({compiled_, triggerBytes(message)}, std::move(emissions));
}

EngineProbe::Outcome EngineProbe::put(HostTransportTriggerVariantsV2 change) {
    auto emissions = emissionsOf<Emissions>(
        [&](const OutputFunction& output) { processor_.processHostTransport(output, change, start, end); });
    return outcome({compiled_, change}, std::move(emissions));
}

EngineProbe::Outcome EngineProbe::putLoading() const {
    RuleProcessor fresh;
    install(fresh, compiled_.rules, sampleRate_);
    auto emissions =
        emissionsOf<Emissions>([&](const OutputFunction& output) { fresh.onLoad(output, start, end); });
    Outcome outcome;
    for (std::size_t i = 0; i < emissions.size(); ++i) {
        outcome.firings.push_back(
            {onLoadPositions_[i], emissions[i].time - start, std::move(emissions[i].messages)});
    }
    return outcome;
}

EngineProbe::Outcome EngineProbe::put(const AskedEvent& event) {
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

/// Each rule that fires calls the output function once, in order; a call behind theirs forwards the event.
EngineProbe::Outcome EngineProbe::outcome(RuleChain chain, Emissions emissions) const {
    Outcome outcome;
    auto emission = emissions.begin();
    while (const auto* rule = chain.next()) {
        const auto ordinal = static_cast<std::size_t>(rule - compiled_.rulesInternal.data());
        outcome.firings.push_back(
            {positions_[ordinal], emission->time - start, std::move(emission->messages)});
        ++emission;
    }
    outcome.forwarded = emission != emissions.end();
    if (chain.consumed()) {
        outcome.consumer = positions_[chain.consumer()];
    }
    return outcome;
}

std::optional<TriggerCondition> EngineProbe::firstFailure(std::size_t rule,
                                                          std::span<const std::uint8_t> message) const {
    const auto& pattern = patterns_[rule];
    return pattern ? pattern->firstFailure(triggerBytes(message)) : std::nullopt;
}

bool EngineProbe::waitsFor(std::size_t rule, std::span<const std::uint8_t> message) const {
    const auto& pattern = patterns_[rule];
    return pattern && !pattern->firstFailure(triggerBytes(message));
}

bool EngineProbe::waitsFor(std::size_t rule, HostTransportTriggerVariantsV2 change) const {
    const auto* host = rules()[rule].trigger.getIf<RuleTriggerV2::HostTransport>();
    return host != nullptr && host->trigger.variants == change;
}

}  // namespace quillo
