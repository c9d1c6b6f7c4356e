// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "engine/Generator.hpp"
#include "engine/TriggerPattern.hpp"
#include "rules/Rule.hpp"

/// The meaning of rules written down as plainly as possible: every rule is looked at, one after the other.
/// The engine must agree with it.
namespace quillo::test {

/// An event of the chain: a message, or a change of the host's transport.
using ChainEvent = std::variant<TriggerBytes, HostTransportTriggerVariantsV2>;

/// What became of an event: which rules of the list fired, and which one consumed it.
struct ChainOutcome {
    std::vector<std::size_t> fired;
    std::optional<std::size_t> consumer;

    bool operator==(const ChainOutcome&) const = default;
};

inline bool equals(const TriggerValueV2& value, unsigned byte) {
    const auto* exact = value.getIf<TriggerValueV2::Value>();
    return exact == nullptr || exact->value == byte;
}

inline bool matches(const VoiceCategoryTriggerV2& voice, const TriggerBytes& message) {
    using Kind = VoiceCategoryTriggerVariantsV2;
    const unsigned kind = message.status & 0xF0U;
    if (!equals(voice.channel, message.status & 0x0FU)) {
        return false;
    }
    if (const auto* on = voice.variants.getIf<Kind::NoteOn>()) {
        return kind == 0x90 && equals(on->note, message.data1);
    }
    if (const auto* off = voice.variants.getIf<Kind::NoteOff>()) {
        return kind == 0x80 && equals(off->note, message.data1);
    }
    if (const auto* change = voice.variants.getIf<Kind::ControlChange>()) {
        return kind == 0xB0 && change->controller == message.data1 && equals(change->value, message.data2);
    }
    return kind == 0xC0 && equals(voice.variants.getIf<Kind::ProgramChange>()->program, message.data1);
}

inline bool matches(const MessageBasedTriggerVariantsV2& trigger, const TriggerBytes& message) {
    using Trigger = MessageBasedTriggerVariantsV2;
    if (const auto* voice = trigger.getIf<Trigger::VoiceCategory>()) {
        return matches(voice->voice, message);
    }
    if (trigger.is<Trigger::Start>()) {
        return message.status == 0xFA;
    }
    return message.status == (trigger.is<Trigger::Stop>() ? 0xFC : 0xFB);
}

/// The first thing about the message that is not what the trigger waits for.
inline std::optional<TriggerCondition> firstFailure(const VoiceCategoryTriggerV2& voice,
                                                    const TriggerBytes& message) {
    using Kind = VoiceCategoryTriggerVariantsV2;
    const unsigned kind = message.status & 0xF0U;
    const auto check = [&](unsigned wanted, bool data1Fits, bool data2Fits) {
        std::optional<TriggerCondition> failure;
        if (kind != wanted) {
            failure = TriggerCondition::kind;
        } else if (!equals(voice.channel, message.status & 0x0FU)) {
            failure = TriggerCondition::channel;
        } else if (!data1Fits) {
            failure = TriggerCondition::data1;
        } else if (!data2Fits) {
            failure = TriggerCondition::data2;
        }
        return failure;
    };
    if (const auto* on = voice.variants.getIf<Kind::NoteOn>()) {
        return check(0x90, equals(on->note, message.data1), true);
    }
    if (const auto* off = voice.variants.getIf<Kind::NoteOff>()) {
        return check(0x80, equals(off->note, message.data1), true);
    }
    if (const auto* change = voice.variants.getIf<Kind::ControlChange>()) {
        return check(0xB0, change->controller == message.data1, equals(change->value, message.data2));
    }
    return check(0xC0, equals(voice.variants.getIf<Kind::ProgramChange>()->program, message.data1), true);
}

inline std::optional<TriggerCondition> firstFailure(const MessageBasedTriggerVariantsV2& trigger,
                                                    const TriggerBytes& message) {
    if (const auto* voice = trigger.getIf<MessageBasedTriggerVariantsV2::VoiceCategory>()) {
        return firstFailure(voice->voice, message);
    }
    return matches(trigger, message) ? std::nullopt : std::optional(TriggerCondition::kind);
}

/// A rule's policy and whether it matches; nothing for an on-load rule, which stands outside the chain.
inline std::optional<std::pair<PassThroughV2, bool>> judge(const Rule& rule, const ChainEvent& event) {
    if (const auto* message = rule.trigger.getIf<RuleTriggerV2::MessageBased>()) {
        const auto* bytes = std::get_if<TriggerBytes>(&event);
        const bool matched = bytes != nullptr && matches(message->trigger.variants, *bytes);
        return {{message->trigger.passTrough, matched}};
    }
    if (const auto* host = rule.trigger.getIf<RuleTriggerV2::HostTransport>()) {
        const auto* transport = std::get_if<HostTransportTriggerVariantsV2>(&event);
        return {{host->trigger.passThrough, transport != nullptr && host->trigger.variants == *transport}};
    }
    return std::nullopt;
}

inline ChainOutcome runReference(const std::vector<Rule>& rules, const ChainEvent& event) {
    ChainOutcome outcome;
    for (std::size_t index = 0; index < rules.size(); ++index) {
        const auto judgement = judge(rules[index], event);
        if (!judgement) {
            continue;
        }
        const auto [policy, matched] = *judgement;
        if (matched) {
            outcome.fired.push_back(index);
        }
        if (policy == (matched ? PassThroughV2::EatMatching : PassThroughV2::EatNonMatching)) {
            outcome.consumer = index;
            return outcome;
        }
    }
    return outcome;
}

}  // namespace quillo::test
