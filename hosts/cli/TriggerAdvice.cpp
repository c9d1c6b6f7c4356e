// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/cli/TriggerAdvice.hpp"

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>

#include "hosts/cli/PolicyWords.hpp"

namespace quillo {

namespace {

using Voice = VoiceCategoryTriggerVariantsV2;
using Message = MessageBasedTriggerVariantsV2;
using Kind = Advice::Kind;

constexpr unsigned greatestDataByte = 127;

/// "rules 1, 2 and 5".
std::string rulesWords(const std::set<std::size_t>& positions) {
    std::string words = "rules ";
    for (const auto position : positions) {
        if (position == *positions.rbegin()) {
            words += " and ";
        } else if (position != *positions.begin()) {
            words += ", ";
        }
        words += std::to_string(position + 1);
    }
    return words;
}

Advice neverFires(const std::vector<Rule>& rules, std::size_t rule, const std::set<std::size_t>& blockers) {
    if (blockers.empty()) {
        return {rule, Kind::neverFires, "can never fire: it waits on a channel that no message has",
                "Give it a channel from 1 to 16, or any."};
    }
    const auto first = *blockers.begin();
    const auto swallowing = blockers.size() == 1 ? ruleAndPolicyWords(rules, first) + " swallows"
                                                 : rulesWords(blockers) + " between them swallow";
    return {rule, Kind::neverFires, "can never fire: " + swallowing + " every event that it waits for",
            "Move it above rule " + std::to_string(first + 1) + "."};
}

const Voice* voiceOf(const RuleTriggerV2& trigger) {
    const auto* based = trigger.getIf<RuleTriggerV2::MessageBased>();
    const auto* category =
        based == nullptr ? nullptr : based->trigger.variants.getIf<Message::VoiceCategory>();
    return category == nullptr ? nullptr : &category->voice.variants;
}

/// The numbers that a trigger compares with data bytes.
std::vector<unsigned> numbersOf(const Voice& voice) {
    std::vector<unsigned> numbers;
    const auto add = [&](const TriggerValueV2& value) {
        if (const auto* exact = value.getIf<TriggerValueV2::Value>()) {
            numbers.push_back(exact->value);
        }
    };
    std::visit(Overloaded{
                   [&](const Voice::NoteOn& on) { add(on.note); },
                   [&](const Voice::NoteOff& off) { add(off.note); },
                   [&](const Voice::ControlChange& change) {
                       numbers.push_back(change.controller);
                       add(change.value);
                   },
                   [&](const Voice::ProgramChange& change) { add(change.program); },
               },
               voice.variant());
    return numbers;
}

std::optional<Advice> onNumbers(const RuleTriggerV2& trigger, std::size_t rule) {
    const auto* voice = voiceOf(trigger);
    for (const auto number : voice == nullptr ? std::vector<unsigned>() : numbersOf(*voice)) {
        if (number > greatestDataByte) {
            return Advice{rule, Kind::impossibleNumber,
                          "waits for the number " + std::to_string(number) +
                              ", which no MIDI message carries",
                          "Give it a number from 0 to 127."};
        }
    }
    return std::nullopt;
}

std::optional<Advice> onSwallowing(const RuleTriggerV2& trigger, std::size_t rule) {
    const bool isHostRule = trigger.is<RuleTriggerV2::HostTransport>();
    if (!isHostRule || policyOf(trigger) != PassThroughV2::EatNonMatching) {
        return std::nullopt;
    }
    return Advice{
        rule, Kind::swallowsAllMIDI,
        "swallows every MIDI message that comes to it: its policy is Consume non-matching, and a rule "
        "for the host's transport matches no MIDI",
        "Set it to Pass through."};
}

std::optional<std::string> systemMessage(const RuleTriggerV2& trigger) {
    const auto* based = trigger.getIf<RuleTriggerV2::MessageBased>();
    if (based == nullptr) {
        return std::nullopt;
    }
    using Name = std::optional<std::string>;
    return std::visit(Overloaded{
                          [](const Message::VoiceCategory&) { return Name(); },
                          [](Message::Start) { return Name("Start"); },
                          [](Message::Stop) { return Name("Stop"); },
                          [](Message::Continue) { return Name("Continue"); },
                      },
                      based->trigger.variants.variant());
}

std::optional<Advice> onVST3(const RuleTriggerV2& trigger, std::size_t rule) {
    if (const auto name = systemMessage(trigger)) {
        return Advice{rule, Kind::notInVST3, "does not fire in a VST3 host: VST3 has no MIDI " + *name,
                      "There, let it wait for the host's transport; other plug-in formats deliver MIDI " +
                          *name + "."};
    }
    const auto* voice = voiceOf(trigger);
    if (voice != nullptr && voice->is<Voice::ProgramChange>()) {
        return Advice{
            rule, Kind::notInVST3,
            "may not fire in a VST3 host: VST3 has no message for it, and some hosts do not deliver "
            "it or change its number",
            "There, let it wait for a controller or a note; other plug-in formats deliver program "
            "changes."};
    }
    return std::nullopt;
}

}  // namespace

std::vector<Advice> adviseOnTrigger(const std::vector<Rule>& rules, std::size_t rule,
                                    const RuleReach& reach) {
    std::vector<Advice> advice;
    const auto add = [&](std::optional<Advice> found) {
        if (found) {
            advice.push_back(*std::move(found));
        }
    };
    const bool canFire = reach.canFire(rule);
    if (!canFire) {
        add(neverFires(rules, rule, reach.blockers(rule)));
    }
    add(onNumbers(rules[rule].trigger, rule));
    add(onSwallowing(rules[rule].trigger, rule));
    if (canFire) {
        add(onVST3(rules[rule].trigger, rule));
    }
    return advice;
}

}  // namespace quillo
