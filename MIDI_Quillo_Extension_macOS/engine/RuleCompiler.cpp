// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/RuleCompiler.hpp"

#include <string>
#include <utility>

#include "platform/FatalError.hpp"
#include "rules/RuleLabel.hpp"

namespace quillo {

namespace {

MIDIRuleInternal compileMessageBased(const Rule& rule, const MessageBasedTriggerV2& trigger,
                                     std::uint32_t place, SampleTime delay) {
    using Part = RuleInternalPartVariants::WithMessageBasedTrigger;
    return {Part{{compile(rule.output.message), trigger.variants}}, trigger.passTrough, place, delay};
}

MIDIRuleInternal compileHostTransport(const Rule& rule, const HostTransportTriggerV2& trigger,
                                      std::uint32_t place, SampleTime delay) {
    using Part = RuleInternalPartVariants::WithHostBasedTrigger;
    auto output = compileFixed(rule.output.message, "a host-transport rule");
    return {Part{{std::move(output), trigger.variants}}, trigger.passThrough, place, delay};
}

}  // namespace

SampleTime delayInSamples(DelayV2 delay, std::uint64_t sampleRate) {
    constexpr std::uint64_t millisecondsPerSecond = 1000;
    if (delay.ms < 0) {
        fatalError("a delay is negative: " + std::to_string(delay.ms) + " ms", "Choose 0 or more.");
    }
    std::uint64_t product = 0;
    if (__builtin_mul_overflow(static_cast<std::uint64_t>(delay.ms), sampleRate, &product)) {
        fatalError("a delay is too long: " + std::to_string(delay.ms) + " ms", "Choose a shorter one.");
    }
    return static_cast<SampleTime>(product / millisecondsPerSecond);
}

MessageList compileFixed(const RuleOutputVariantsV2& output, const std::string& purpose) {
    const auto content = compile(output);
    const auto* bytes = content.getIf<MessageContent::Bytes>();
    if (bytes == nullptr) {
        fatalError(purpose + " copies from a triggering message, and there is none",
                   "Choose values of its own for what it sends.");
    }
    return bytes->messages;
}

namespace {

void compileInto(std::vector<MIDIOnLoadRuleInternal>& onLoad, std::vector<MIDIRuleInternal>& chain,
                 const Rule& rule, std::uint32_t place, std::uint64_t sampleRate) {
    const auto delay = delayInSamples(rule.output.delay, sampleRate);
    if (const auto* message = rule.trigger.getIf<RuleTriggerV2::MessageBased>()) {
        chain.push_back(compileMessageBased(rule, message->trigger, place, delay));
    } else if (const auto* host = rule.trigger.getIf<RuleTriggerV2::HostTransport>()) {
        chain.push_back(compileHostTransport(rule, host->trigger, place, delay));
    } else {
        onLoad.push_back({compileFixed(rule.output.message, "an on-load rule"), place, delay});
    }
}

std::vector<RuleName> namesOf(const std::vector<Rule>& rules) {
    std::vector<RuleName> names;
    names.reserve(rules.size());
    for (const auto& rule : rules) {
        names.emplace_back(rule.name);
    }
    return names;
}

}  // namespace

CompiledRules compileRules(std::vector<Rule> rules, std::uint64_t sampleRate, const RuleShelf& shelf) {
    std::vector<MIDIOnLoadRuleInternal> onLoad;
    std::vector<MIDIRuleInternal> chain;
    for (std::size_t position = 0; position < rules.size(); ++position) {
        try {
            compileInto(onLoad, chain, rules[position], static_cast<std::uint32_t>(position), sampleRate);
        } catch (const FatalError& error) {
            throw error.about(ruleLabel(positionInList(position, shelf), rules[position].name));
        }
    }
    RuleTable table(chain);
    auto names = namesOf(rules);
    FiringCounts counts(rules.size());
    return {std::move(rules), std::move(onLoad), std::move(chain),
            std::move(table), std::move(names),  std::move(counts)};
}

}  // namespace quillo
