// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/TriggerAdvice.hpp"

#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "words/PolicyWords.hpp"

namespace quillo {

namespace {

using Voice = VoiceCategoryTriggerVariantsV2;
using Message = MessageBasedTriggerVariantsV2;
using Kind = Advice::Kind;

constexpr unsigned greatestDataByte = 127;

/// "rule 1", "rules 1, 2 and 5"; of very many the first ones and how many more there are.
std::string rulesWords(const std::vector<std::size_t>& positions) {
    constexpr std::size_t mostNamed = 16;
    const bool areMany = positions.size() > mostNamed;
    std::string words = positions.size() == 1 ? "rule " : "rules ";
    std::size_t named = 0;
    for (const auto position : positions) {
        if (areMany && named == mostNamed) {
            return words + " and " + std::to_string(positions.size() - named) + " more";
        }
        if (named > 0) {
            words += !areMany && position == positions.back() ? " and " : ", ";
        }
        words += std::to_string(position + 1);
        ++named;
    }
    return words;
}

/// A gate must be opened: wherever other rules stand, only its own kind of event passes.
std::string wayPast(const std::vector<Rule>& rules, std::size_t rule, const RuleReach& reach,
                    std::size_t firstBlocker) {
    const auto inTheWay = reach.inTheWay(rule);
    const auto opened = "Set " + rulesWords(inTheWay) + " to Pass through";
    const bool isGate = policyOf(rules[firstBlocker].trigger) == PassThroughV2::EatNonMatching;
    if (isGate || !reach.canMove(rule)) {
        return opened + ".";
    }
    return opened + ", or move this rule above " +
           (inTheWay.size() == 1 ? "it" : rulesWords({firstBlocker})) + ".";
}

Advice neverFires(const std::vector<Rule>& rules, std::size_t rule, const RuleReach& reach) {
    const auto blockers = reach.blockers(rule);
    if (blockers.empty()) {
        return {rule, Kind::neverFires, "can never fire: it waits on a channel that no message has",
                "Give it a channel from 1 to 16, or any."};
    }
    const auto first = blockers.front();
    const auto swallowing = blockers.size() == 1 ? ruleAndPolicyWords(rules, first) + " swallows"
                                                 : rulesWords(blockers) + " between them swallow";
    return {rule, Kind::neverFires, "can never fire: " + swallowing + " every event that it waits for",
            wayPast(rules, rule, reach, first)};
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

std::optional<Advice> onSwallowing(const RuleTriggerV2& trigger, std::size_t rule) {
    if (policyOf(trigger) != PassThroughV2::EatNonMatching) {
        return std::nullopt;
    }
    const std::string wayOut = "Set it to Pass through.";
    if (const auto name = systemMessage(trigger)) {
        return Advice{
            rule, Kind::swallowsAllMIDI,
            "swallows every MIDI message but MIDI " + *name + ": its policy is Consume non-matching", wayOut};
    }
    if (!trigger.is<RuleTriggerV2::HostTransport>()) {
        return std::nullopt;
    }
    return Advice{
        rule, Kind::swallowsAllMIDI,
        "swallows every MIDI message that comes to it: its policy is Consume non-matching, and a rule "
        "for the host's transport matches no MIDI",
        wayOut};
}

std::optional<Advice> onVST3(const RuleTriggerV2& trigger, std::size_t rule) {
    if (const auto name = systemMessage(trigger)) {
        return Advice{rule, Kind::notInVST3, "does not fire in a VST3 host: VST3 has no MIDI " + *name,
                      "In VST3, let it wait for the host's transport; other plug-in formats deliver MIDI " +
                          *name + "."};
    }
    const auto* voice = voiceOf(trigger);
    if (voice != nullptr && voice->is<Voice::ProgramChange>()) {
        return Advice{
            rule, Kind::notInVST3,
            "may not fire in a VST3 host: most VST3 hosts deliver no program changes to a plug-in",
            "In VST3, let it wait for a controller or a note; other plug-in formats deliver program "
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
    const auto number = onNumbers(rules[rule].trigger, rule);
    if (!canFire && !number) {
        add(neverFires(rules, rule, reach));
    }
    add(number);
    add(onSwallowing(rules[rule].trigger, rule));
    if (canFire) {
        add(onVST3(rules[rule].trigger, rule));
    }
    return advice;
}

}  // namespace quillo
