// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "rules/Rule.hpp"

/// Rules in a line, for tests: `rule(onNoteOn(exactly(60)), send(noteOn(2, 60, 100), 10))`.
namespace quillo::test {

inline const TriggerValueV2 any = TriggerValueV2::AnyValue{};
inline const GenericByteV2 triggerByte = GenericByteV2::RespectiveTriggerByte{};
inline const RuleOutputChannelV2 triggerChannel = RuleOutputChannelV2::TriggerChannel{};
inline constexpr auto eatMatching = PassThroughV2::EatMatching;
inline constexpr auto eatNonMatching = PassThroughV2::EatNonMatching;

inline TriggerValueV2 exactly(std::uint8_t value) {
    return TriggerValueV2::Value{value};
}

inline GenericByteV2 byte(std::uint8_t value) {
    return GenericByteV2::Value{value};
}

inline RuleOutputChannelV2 channel(std::uint8_t zeroBased) {
    return RuleOutputChannelV2::Value{zeroBased};
}

inline RuleTriggerV2 onMessage(MessageBasedTriggerVariantsV2 variants, PassThroughV2 policy) {
    return RuleTriggerV2::MessageBased{{std::move(variants), policy}};
}

inline RuleTriggerV2 onVoice(VoiceCategoryTriggerVariantsV2 kind, TriggerValueV2 onChannel,
                             PassThroughV2 policy) {
    return onMessage(MessageBasedTriggerVariantsV2::VoiceCategory{{std::move(kind), onChannel}}, policy);
}

inline RuleTriggerV2 onNoteOn(TriggerValueV2 note = any, TriggerValueV2 onChannel = any,
                              PassThroughV2 policy = PassThroughV2::PassThrough) {
    return onVoice(VoiceCategoryTriggerVariantsV2::NoteOn{note}, onChannel, policy);
}

inline RuleTriggerV2 onNoteOff(TriggerValueV2 note = any, TriggerValueV2 onChannel = any,
                               PassThroughV2 policy = PassThroughV2::PassThrough) {
    return onVoice(VoiceCategoryTriggerVariantsV2::NoteOff{note}, onChannel, policy);
}

inline RuleTriggerV2 onControlChange(std::uint8_t controller, TriggerValueV2 value = any,
                                     TriggerValueV2 onChannel = any,
                                     PassThroughV2 policy = PassThroughV2::PassThrough) {
    return onVoice(VoiceCategoryTriggerVariantsV2::ControlChange{controller, value}, onChannel, policy);
}

inline RuleTriggerV2 onProgramChange(TriggerValueV2 program = any, TriggerValueV2 onChannel = any,
                                     PassThroughV2 policy = PassThroughV2::PassThrough) {
    return onVoice(VoiceCategoryTriggerVariantsV2::ProgramChange{program}, onChannel, policy);
}

inline RuleTriggerV2 onMIDIStart(PassThroughV2 policy = PassThroughV2::PassThrough) {
    return onMessage(MessageBasedTriggerVariantsV2::Start{}, policy);
}

inline RuleTriggerV2 onMIDIStop(PassThroughV2 policy = PassThroughV2::PassThrough) {
    return onMessage(MessageBasedTriggerVariantsV2::Stop{}, policy);
}

inline RuleTriggerV2 onMIDIContinue(PassThroughV2 policy = PassThroughV2::PassThrough) {
    return onMessage(MessageBasedTriggerVariantsV2::Continue{}, policy);
}

inline RuleTriggerV2 onHost(HostTransportTriggerVariantsV2 trigger,
                            PassThroughV2 policy = PassThroughV2::PassThrough) {
    return RuleTriggerV2::HostTransport{{trigger, policy}};
}

inline RuleTriggerV2 onLoad() {
    return RuleTriggerV2::OnLoad{};
}

inline RuleOutputVariantsV2 protocol(StatusV2 status, RuleOutputChannelV2 onChannel, GenericByteV2 byte1,
                                     std::optional<GenericByteV2> byte2 = std::nullopt) {
    return RuleOutputVariantsV2::Protocol{StatusByteV2::WithChannel{status, onChannel}, byte1, byte2};
}

inline RuleOutputVariantsV2 noteOn(std::uint8_t zeroBasedChannel, std::uint8_t note, std::uint8_t velocity) {
    return protocol(StatusV2::noteOn, channel(zeroBasedChannel), byte(note), byte(velocity));
}

inline RuleOutputVariantsV2 controlChange(std::uint8_t zeroBasedChannel, std::uint8_t controller,
                                          std::uint8_t value) {
    return protocol(StatusV2::CC, channel(zeroBasedChannel), byte(controller), byte(value));
}

inline RuleOutputVariantsV2 programChange(RuleOutputChannelV2 onChannel, std::uint8_t bank,
                                          GenericByteV2 program) {
    return RuleOutputVariantsV2::ProgramChange{onChannel, bank, program};
}

inline RuleOutputVariantsV2 systemExclusive(std::vector<std::uint8_t> body) {
    return RuleOutputVariantsV2::SystemExclusive{std::move(body)};
}

inline RuleOutputV2 send(RuleOutputVariantsV2 message, std::int64_t delayMs = 0) {
    return {std::move(message), {delayMs}};
}

/// An output like any other, where a test does not care which.
inline const RuleOutputV2 volume = send(controlChange(0, 7, 100));

inline Rule rule(RuleTriggerV2 trigger, RuleOutputV2 output, std::string name = "") {
    return {std::move(output), std::move(trigger), std::move(name)};
}

/// One rule of this name, for any note-on.
inline std::vector<Rule> rulesCalled(const std::string& name) {
    return {rule(onNoteOn(), send(noteOn(0, 60, 1)), name)};
}

}  // namespace quillo::test
