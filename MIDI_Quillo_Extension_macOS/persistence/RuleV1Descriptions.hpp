// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <concepts>

#include "persistence/Description.hpp"
#include "persistence/RuleV1.hpp"

/// How the oldest rules were stored. Nearly every byte has an object of its own around it, with the key
/// "value".
namespace quillo {

template <class T, class... Candidates>
concept OneOf = (std::same_as<T, Candidates> || ...);

template <class T>
    requires OneOf<T, ChannelV1, NoteV1, VelocityV1, ControllerV1, ControllerValueV1, ProgramV1, PressureV1,
                   BankV1, PitchV1>
struct Description<T> {
    static constexpr std::tuple fields{field("value", &T::value)};
};

template <>
struct Description<RuleV1> {
    static constexpr std::tuple fields{field("output", &RuleV1::output), field("trigger", &RuleV1::trigger)};
};

template <>
struct Description<RuleOutputV1> {
    static constexpr std::tuple fields{field("message", &RuleOutputV1::message),
                                       field("delay", &RuleOutputV1::delay)};
};

template <>
struct Description<DelayV1> {
    static constexpr std::tuple fields{field("ms", &DelayV1::ms)};
};

template <>
struct Description<RuleOutputVariantsV1> {
    using Prime = RuleOutputVariantsV1::Prime;
    using Shortcut = RuleOutputVariantsV1::Shortcut;

    static constexpr std::tuple cases{unionCase<Prime>("Prime", &Prime::message),
                                      unionCase<Shortcut>("Shortcut", &Shortcut::shortcut)};
};

template <>
struct Description<MIDIMessageV1> {
    using NoteOff = MIDIMessageV1::NoteOff;
    using NoteOn = MIDIMessageV1::NoteOn;
    using ControlChange = MIDIMessageV1::ControlChange;
    using ProgramChange = MIDIMessageV1::ProgramChange;
    using ChannelPressure = MIDIMessageV1::ChannelPressure;
    using PitchWheel = MIDIMessageV1::PitchWheel;
    using SystemExclusive = MIDIMessageV1::SystemExclusive;

    static constexpr std::tuple cases{
        unionCase<NoteOff>("NoteOff", &NoteOff::channel, &NoteOff::note, &NoteOff::velocity),
        unionCase<NoteOn>("NoteOn", &NoteOn::channel, &NoteOn::note, &NoteOn::velocity),
        unionCase<ControlChange>("ControlChange", &ControlChange::channel, &ControlChange::controller,
                                 &ControlChange::value),
        unionCase<ProgramChange>("ProgramChange", &ProgramChange::channel, &ProgramChange::program),
        unionCase<ChannelPressure>("ChannelPressure", &ChannelPressure::channel, &ChannelPressure::pressure),
        unionCase<PitchWheel>("PitchWheel", &PitchWheel::channel, &PitchWheel::pitch),
        unionCase<SystemExclusive>("SystemExclusive", &SystemExclusive::body)};
};

template <>
struct Description<ShortcutVariantsV1> {
    using ProgramChange = ShortcutVariantsV1::ProgramChange;

    static constexpr std::tuple cases{unionCase<ProgramChange>(
        "ProgramChange", &ProgramChange::channel, &ProgramChange::bank, &ProgramChange::program)};
};

template <>
struct Description<RuleTriggerV1> {
    using MessageBased = RuleTriggerV1::MessageBased;

    static constexpr std::tuple cases{unionCase<MessageBased>("MessageBased", &MessageBased::trigger),
                                      unionCase<RuleTriggerV1::OnLoad>("OnLoad")};
};

template <>
struct Description<MessageBasedTriggerV1> {
    static constexpr std::tuple fields{field("variants", &MessageBasedTriggerV1::variants),
                                       field("passTrough", &MessageBasedTriggerV1::passTrough)};
};

template <>
struct Description<MesageBasedTriggerVariantsV1> {
    using VoiceCategory = MesageBasedTriggerVariantsV1::VoiceCategory;

    static constexpr std::tuple cases{unionCase<VoiceCategory>("VoiceCategory", &VoiceCategory::voice),
                                      unionCase<MesageBasedTriggerVariantsV1::Start>("Start"),
                                      unionCase<MesageBasedTriggerVariantsV1::Stop>("Stop"),
                                      unionCase<MesageBasedTriggerVariantsV1::Continue>("Continue")};
};

template <>
struct Description<VoiceCategoryTriggerV1> {
    static constexpr std::tuple fields{field("variants", &VoiceCategoryTriggerV1::variants),
                                       field("channel", &VoiceCategoryTriggerV1::channel)};
};

template <>
struct Description<VoiceCategoryTriggerVariantsV1> {
    using NoteOn = VoiceCategoryTriggerVariantsV1::NoteOn;
    using NoteOff = VoiceCategoryTriggerVariantsV1::NoteOff;
    using ControlChange = VoiceCategoryTriggerVariantsV1::ControlChange;

    static constexpr std::tuple cases{
        unionCase<NoteOn>("NoteOn", &NoteOn::note), unionCase<NoteOff>("NoteOff", &NoteOff::note),
        unionCase<ControlChange>("ControlChange", &ControlChange::controller, &ControlChange::value)};
};

template <>
struct Description<TriggerChannelV1> {
    using Channel = TriggerChannelV1::Channel;

    static constexpr std::tuple cases{unionCase<Channel>("Channel", &Channel::channel),
                                      unionCase<TriggerChannelV1::AnyChannel>("AnyChannel")};
};

template <>
struct Description<TriggerNoteV1> {
    static constexpr std::tuple cases{unionCase<TriggerNoteV1::Note>("Note", &TriggerNoteV1::Note::note),
                                      unionCase<TriggerNoteV1::AnyNote>("AnyNote")};
};

template <>
struct Description<TriggerControllerValueV1> {
    using Value = TriggerControllerValueV1::Value;

    static constexpr std::tuple cases{unionCase<Value>("Value", &Value::value),
                                      unionCase<TriggerControllerValueV1::AnyValue>("AnyValue")};
};

template <>
struct Description<PassThroughV1> {
    static constexpr std::array<std::string_view, 3> names{"PassThrough", "EatMatching", "EatNonMatching"};
};

}  // namespace quillo
