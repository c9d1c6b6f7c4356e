// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/Finders.hpp"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "midi/Status.hpp"
#include "words/PolicyWords.hpp"

namespace quillo {

namespace {

using Voice = VoiceCategoryTriggerVariantsV2;
using Message = MessageBasedTriggerVariantsV2;
using Kind = Advice::Kind;

constexpr std::size_t mostNamed = 16;

/// "rule 1", "rules 1 and 2", "rules 1 to 4, 6 and 9"; of many the first ones "and others".
std::string rulesWords(const std::vector<std::size_t>& positions) {
    const auto count = std::min(positions.size(), mostNamed);
    std::vector<std::string> stretches;
    for (std::size_t first = 0, end = 0; first < count; first = end) {
        for (end = first + 1; end < count && positions[end] == positions[end - 1] + 1;) {
            ++end;
        }
        end = end - first > 2 ? end : first + 1;
        const auto last = end - first > 1 ? " to " + std::to_string(positions[end - 1] + 1) : "";
        stretches.push_back(std::to_string(positions[first] + 1) + last);
    }
    if (count < positions.size()) {
        stretches.emplace_back("others");
    }
    std::string words = positions.size() == 1 ? "rule " : "rules ";
    for (std::size_t i = 0; i < stretches.size(); ++i) {
        words += (i == 0 ? "" : i + 1 == stretches.size() ? " and " : ", ") + stretches[i];
    }
    return words;
}

bool isGate(const Rule& rule) {
    return policyOf(rule.trigger) == PassThroughV2::EatNonMatching;
}

/// Whether a rule that cannot fire has its work all the same: rules above take what matches, and it takes all
/// else. Two gates leave nothing to pass, which is no such work.
bool dropsTheRest(const AdvisedRules& list, std::size_t rule) {
    const auto& reach = list.reach();
    return isGate(list.rules()[rule]) && reach.consumesAny(rule) &&
           std::ranges::none_of(reach.blockers(rule),
                                [&](std::size_t blocker) { return isGate(list.rules()[blocker]); });
}

/// A gate must be opened: wherever other rules stand, only its own kind of event passes.
std::string wayPast(const std::vector<Rule>& rules, std::size_t rule, const RuleReach& reach,
                    std::size_t firstBlocker) {
    const auto inTheWay = reach.inTheWay(rule, mostNamed + 1);
    const auto opened = "Set " + rulesWords(inTheWay) + " to Pass through";
    if (isGate(rules[firstBlocker]) || !reach.canMove(rule)) {
        return opened + ".";
    }
    return opened + ", or move this rule above " +
           (inTheWay.size() == 1 ? "it" : rulesWords({firstBlocker})) + ".";
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

}  // namespace

std::optional<Advice> findImpossibleNumber(const AdvisedRules& list, std::size_t rule) {
    const auto* voice = voiceOf(list.rules()[rule].trigger);
    for (const auto number : voice == nullptr ? std::vector<unsigned>() : numbersOf(*voice)) {
        if (number > midi::greatestDataByte) {
            return Advice{rule, Kind::impossibleNumber,
                          "waits for the number " + std::to_string(number) +
                              ", which no MIDI message carries",
                          "Give it a number from 0 to 127."};
        }
    }
    return std::nullopt;
}

std::optional<Advice> findNeverFires(const AdvisedRules& list, std::size_t rule) {
    const auto& reach = list.reach();
    if (reach.canFire(rule) || findImpossibleNumber(list, rule)) {
        return std::nullopt;
    }
    const auto& blockers = reach.blockers(rule);
    if (blockers.empty()) {
        return Advice{rule, Kind::neverFires, "can never fire: it waits on a channel that no message has",
                      "Give it a channel from 1 to 16, or any."};
    }
    if (dropsTheRest(list, rule)) {
        return std::nullopt;
    }
    const auto first = blockers.front();
    const auto swallowing = blockers.size() == 1 ? ruleAndPolicyWords(list.rules(), first) + " swallows"
                                                 : rulesWords(blockers) + " between them swallow";
    return Advice{rule, Kind::neverFires, "can never fire: " + swallowing + " every event that it waits for",
                  wayPast(list.rules(), rule, reach, first)};
}

std::optional<Advice> findSwallowsAllMIDI(const AdvisedRules& list, std::size_t rule) {
    const auto& trigger = list.rules()[rule].trigger;
    if (!isGate(list.rules()[rule])) {
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

std::optional<Advice> findNotInVST3(const AdvisedRules& list, std::size_t rule) {
    const auto& trigger = list.rules()[rule].trigger;
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

}  // namespace quillo
