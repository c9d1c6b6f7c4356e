// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "persistence/Description.hpp"
#include "persistence/PluginDataV3.hpp"
#include "persistence/RuleV2.hpp"
#include "rules/Rule.hpp"
#include "rules/RuleShelf.hpp"

/// How the rule types are stored. The keys "passTrough" of a message trigger and "passThrough" of a host
/// transport trigger differ in every stored document and stay as they are.
namespace quillo {

template <>
struct Description<PluginDataV3> {
    static constexpr std::tuple fields{field("rules", &PluginDataV3::rules),
                                       field("shelf", &PluginDataV3::shelf)};
};

template <>
struct Description<ShelvedRule> {
    static constexpr std::tuple fields{field("place", &ShelvedRule::place),
                                       field("rule", &ShelvedRule::rule)};
};

template <>
struct Description<Rule> {
    static constexpr std::tuple fields{field("output", &Rule::output), field("trigger", &Rule::trigger),
                                       field("name", &Rule::name)};
};

template <>
struct Description<RuleV2Helper> {
    static constexpr std::tuple fields{field("output", &RuleV2Helper::output),
                                       field("trigger", &RuleV2Helper::trigger)};
};

template <>
struct Description<RuleOutputV2> {
    static constexpr std::tuple fields{field("message", &RuleOutputV2::message),
                                       field("delay", &RuleOutputV2::delay)};
};

template <>
struct Description<DelayV2> {
    static constexpr std::tuple fields{field("ms", &DelayV2::ms)};
};

template <>
struct Description<RuleOutputVariantsV2> {
    using Protocol = RuleOutputVariantsV2::Protocol;
    using ProgramChange = RuleOutputVariantsV2::ProgramChange;
    using SystemExclusive = RuleOutputVariantsV2::SystemExclusive;

    static constexpr std::tuple cases{
        unionCase<Protocol>("Protocol", &Protocol::status, &Protocol::byte1, &Protocol::byte2),
        unionCase<ProgramChange>("ProgramChange", &ProgramChange::channel, &ProgramChange::bank,
                                 &ProgramChange::program),
        unionCase<SystemExclusive>("SystemExclusive", &SystemExclusive::body)};
};

template <>
struct Description<StatusByteV2> {
    using JustStatus = StatusByteV2::JustStatus;
    using WithChannel = StatusByteV2::WithChannel;

    static constexpr std::tuple cases{
        unionCase<JustStatus>("JustStatus", &JustStatus::status),
        unionCase<WithChannel>("WithChannel", &WithChannel::status, &WithChannel::channel)};
};

template <>
struct Description<StatusV2> {
    static constexpr auto numbers = statusNibbles;
};

template <>
struct Description<GenericByteV2> {
    static constexpr std::tuple cases{
        unionCase<GenericByteV2::Value>("Value", &GenericByteV2::Value::value),
        unionCase<GenericByteV2::RespectiveTriggerByte>("RespectiveTriggerByte")};
};

template <>
struct Description<RuleOutputChannelV2> {
    static constexpr std::tuple cases{
        unionCase<RuleOutputChannelV2::Value>("Value", &RuleOutputChannelV2::Value::value),
        unionCase<RuleOutputChannelV2::TriggerChannel>("TriggerChannel")};
};

template <>
struct Description<RuleTriggerV2> {
    using MessageBased = RuleTriggerV2::MessageBased;
    using HostTransport = RuleTriggerV2::HostTransport;

    static constexpr std::tuple cases{unionCase<MessageBased>("MessageBased", &MessageBased::trigger),
                                      unionCase<HostTransport>("HostTransport", &HostTransport::trigger),
                                      unionCase<RuleTriggerV2::OnLoad>("OnLoad")};
};

template <>
struct Description<MessageBasedTriggerV2> {
    static constexpr std::tuple fields{field("variants", &MessageBasedTriggerV2::variants),
                                       field("passTrough", &MessageBasedTriggerV2::passTrough)};
};

template <>
struct Description<HostTransportTriggerV2> {
    static constexpr std::tuple fields{field("variants", &HostTransportTriggerV2::variants),
                                       field("passThrough", &HostTransportTriggerV2::passThrough)};
};

template <>
struct Description<MessageBasedTriggerVariantsV2> {
    using VoiceCategory = MessageBasedTriggerVariantsV2::VoiceCategory;

    static constexpr std::tuple cases{unionCase<VoiceCategory>("VoiceCategory", &VoiceCategory::voice),
                                      unionCase<MessageBasedTriggerVariantsV2::Start>("Start"),
                                      unionCase<MessageBasedTriggerVariantsV2::Stop>("Stop"),
                                      unionCase<MessageBasedTriggerVariantsV2::Continue>("Continue")};
};

template <>
struct Description<VoiceCategoryTriggerV2> {
    static constexpr std::tuple fields{field("variants", &VoiceCategoryTriggerV2::variants),
                                       field("channel", &VoiceCategoryTriggerV2::channel)};
};

template <>
struct Description<VoiceCategoryTriggerVariantsV2> {
    using NoteOn = VoiceCategoryTriggerVariantsV2::NoteOn;
    using NoteOff = VoiceCategoryTriggerVariantsV2::NoteOff;
    using ControlChange = VoiceCategoryTriggerVariantsV2::ControlChange;
    using ProgramChange = VoiceCategoryTriggerVariantsV2::ProgramChange;

    static constexpr std::tuple cases{
        unionCase<NoteOn>("NoteOn", &NoteOn::note), unionCase<NoteOff>("NoteOff", &NoteOff::note),
        unionCase<ControlChange>("ControlChange", &ControlChange::controller, &ControlChange::value),
        unionCase<ProgramChange>("ProgramChange", &ProgramChange::program)};
};

template <>
struct Description<TriggerValueV2> {
    static constexpr std::tuple cases{
        unionCase<TriggerValueV2::Value>("Value", &TriggerValueV2::Value::value),
        unionCase<TriggerValueV2::AnyValue>("AnyValue")};
};

template <>
struct Description<HostTransportTriggerVariantsV2> {
    static constexpr std::array<std::string_view, 3> names{"Start", "Continue", "Stop"};
};

template <>
struct Description<PassThroughV2> {
    static constexpr std::array<std::string_view, 3> names{"PassThrough", "EatMatching", "EatNonMatching"};
};

}  // namespace quillo
