// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/RuleV2.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/FatalError.hpp"

namespace quillo {

namespace {

using Output = RuleOutputVariantsV2;
using Byte = GenericByteV2::Value;

StatusByteV2 onChannel(StatusV2 status, ChannelV1 channel) {
    return StatusByteV2::WithChannel{status, RuleOutputChannelV2::Value{channel.value}};
}

std::uint8_t narrowed(PitchV1 pitch) {
    if (!std::in_range<std::uint8_t>(pitch.value)) {
        fatalError("pitch " + std::to_string(pitch.value) + " of a V1 rule is above 255");
    }
    return static_cast<std::uint8_t>(pitch.value);
}

Output migratedPitchWheel(const MIDIMessageV1::PitchWheel& message) {
    const auto pitch = narrowed(message.pitch);
    const auto low = static_cast<std::uint8_t>(pitch & 127);
    const auto high = static_cast<std::uint8_t>(pitch >> 7);
    return Output::Protocol{onChannel(StatusV2::pitchWheel, message.channel), Byte{low}, Byte{high}};
}

Output migrated(const MIDIMessageV1& message) {
    using Message = MIDIMessageV1;
    return std::visit(Overloaded{
                          [](const Message::NoteOff& off) -> Output {
                              return Output::Protocol{onChannel(StatusV2::noteOff, off.channel),
                                                      Byte{off.note.value}, Byte{off.velocity.value}};
                          },
                          [](const Message::NoteOn& on) -> Output {
                              return Output::Protocol{onChannel(StatusV2::noteOn, on.channel),
                                                      Byte{on.note.value}, Byte{on.velocity.value}};
                          },
                          [](const Message::ControlChange& change) -> Output {
                              return Output::Protocol{onChannel(StatusV2::CC, change.channel),
                                                      Byte{change.controller.value},
                                                      Byte{change.value.value}};
                          },
                          [](const Message::ProgramChange& change) -> Output {
                              return Output::Protocol{onChannel(StatusV2::programChange, change.channel),
                                                      Byte{change.program.value}, std::nullopt};
                          },
                          [](const Message::ChannelPressure& pressure) -> Output {
                              return Output::Protocol{onChannel(StatusV2::channelPressure, pressure.channel),
                                                      Byte{pressure.pressure.value}, std::nullopt};
                          },
                          [](const Message::PitchWheel& wheel) { return migratedPitchWheel(wheel); },
                          [](const Message::SystemExclusive& exclusive) -> Output {
                              return Output::SystemExclusive{exclusive.body};
                          },
                      },
                      message.variant());
}

Output migrated(const ShortcutVariantsV1& shortcut) {
    const auto& change = *shortcut.getIf<ShortcutVariantsV1::ProgramChange>();
    return Output::ProgramChange{RuleOutputChannelV2::Value{change.channel.value}, change.bank.value,
                                 Byte{change.program.value}};
}

RuleOutputV2 migrated(const RuleOutputV1& output) {
    auto message = std::visit(
        Overloaded{
            [](const RuleOutputVariantsV1::Prime& prime) { return migrated(prime.message); },
            [](const RuleOutputVariantsV1::Shortcut& shortcut) { return migrated(shortcut.shortcut); },
        },
        output.message.variant());
    return {std::move(message), DelayV2{output.delay.ms}};
}

TriggerValueV2 migrated(const TriggerNoteV1& note) {
    if (const auto* exact = note.getIf<TriggerNoteV1::Note>()) {
        return TriggerValueV2::Value{exact->note.value};
    }
    return TriggerValueV2::AnyValue{};
}

TriggerValueV2 migrated(const TriggerControllerValueV1& value) {
    if (const auto* exact = value.getIf<TriggerControllerValueV1::Value>()) {
        return TriggerValueV2::Value{exact->value.value};
    }
    return TriggerValueV2::AnyValue{};
}

TriggerValueV2 migrated(const TriggerChannelV1& channel) {
    if (const auto* exact = channel.getIf<TriggerChannelV1::Channel>()) {
        return TriggerValueV2::Value{exact->channel};
    }
    return TriggerValueV2::AnyValue{};
}

VoiceCategoryTriggerV2 migrated(const VoiceCategoryTriggerV1& voice) {
    using Old = VoiceCategoryTriggerVariantsV1;
    using New = VoiceCategoryTriggerVariantsV2;
    auto variants =
        std::visit(Overloaded{
                       [](const Old::NoteOn& on) -> New { return New::NoteOn{migrated(on.note)}; },
                       [](const Old::NoteOff& off) -> New { return New::NoteOff{migrated(off.note)}; },
                       [](const Old::ControlChange& change) -> New {
                           return New::ControlChange{change.controller.value, migrated(change.value)};
                       },
                   },
                   voice.variants.variant());
    return {variants, migrated(voice.channel)};
}

PassThroughV2 migrated(PassThroughV1 passThrough) {
    switch (passThrough) {
    case PassThroughV1::PassThrough: break;
    case PassThroughV1::EatMatching: return PassThroughV2::EatMatching;
    case PassThroughV1::EatNonMatching: return PassThroughV2::EatNonMatching;
    }
    return PassThroughV2::PassThrough;
}

MessageBasedTriggerV2 migrated(const MessageBasedTriggerV1& trigger) {
    using Old = MesageBasedTriggerVariantsV1;
    using New = MessageBasedTriggerVariantsV2;
    const auto variants = std::visit(
        Overloaded{
            [](const Old::VoiceCategory& voice) -> New { return New::VoiceCategory{migrated(voice.voice)}; },
            [](const Old::Start&) -> New { return New::Start{}; },
            [](const Old::Stop&) -> New { return New::Stop{}; },
            [](const Old::Continue&) -> New { return New::Continue{}; },
        },
        trigger.variants.variant());
    return {variants, migrated(trigger.passTrough)};
}

RuleTriggerV2 migrated(const RuleTriggerV1& trigger) {
    if (const auto* messageBased = trigger.getIf<RuleTriggerV1::MessageBased>()) {
        return RuleTriggerV2::MessageBased{migrated(messageBased->trigger)};
    }
    return RuleTriggerV2::OnLoad{};
}

}  // namespace

RuleV2 migrated(const RuleV1& rule) {
    return {migrated(rule.output), migrated(rule.trigger)};
}

}  // namespace quillo
