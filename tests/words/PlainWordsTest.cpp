// SPDX-License-Identifier: GPL-3.0-or-later
#include "words/PlainWords.hpp"

#include <gmock/gmock.h>

#include <numeric>

namespace quillo {
namespace {

using Voice = VoiceCategoryTriggerVariantsV2;
using Message = MessageBasedTriggerVariantsV2;
using Output = RuleOutputVariantsV2;

const TriggerValueV2 any = TriggerValueV2::AnyValue{};
const GenericByteV2 fromTrigger = GenericByteV2::RespectiveTriggerByte{};
const RuleOutputChannelV2 triggerChannel = RuleOutputChannelV2::TriggerChannel{};

TriggerValueV2 only(std::uint8_t value) {
    return TriggerValueV2::Value{value};
}

GenericByteV2 byte(std::uint8_t value) {
    return GenericByteV2::Value{value};
}

RuleTriggerV2 when(Voice voice, TriggerValueV2 channel = any) {
    return RuleTriggerV2::MessageBased{
        {Message::VoiceCategory{{voice, channel}}, PassThroughV2::PassThrough}};
}

RuleTriggerV2 whenMessage(const Message& message, PassThroughV2 policy = PassThroughV2::PassThrough) {
    return RuleTriggerV2::MessageBased{{message, policy}};
}

RuleTriggerV2 whenHost(HostTransportTriggerVariantsV2 variant, PassThroughV2 policy) {
    return RuleTriggerV2::HostTransport{{variant, policy}};
}

const RuleTriggerV2 anyNoteOn = when(Voice::NoteOn{any});
const RuleTriggerV2 anyController1 = when(Voice::ControlChange{1, any});
const RuleTriggerV2 anyProgram = when(Voice::ProgramChange{any});

RuleOutputV2 sendBytes(StatusV2 status, GenericByteV2 byte1, std::optional<GenericByteV2> byte2) {
    return {Output::Protocol{StatusByteV2::WithChannel{status, RuleOutputChannelV2::Value{0}}, byte1, byte2},
            {0}};
}

Rule named(const std::string& name, const RuleOutputV2& output, const RuleTriggerV2& trigger) {
    return {output, trigger, name};
}

std::string words(const RuleOutputV2& output, const RuleTriggerV2& trigger = anyNoteOn) {
    return inPlainWords(output, trigger);
}

TEST(PlainWords, OfARuleNameItsTriggerPolicyMessageAndDelay) {
    const Output::Protocol volume{StatusByteV2::WithChannel{StatusV2::CC, triggerChannel}, byte(7),
                                  fromTrigger};
    const Message modWheel = Message::VoiceCategory{{Voice::ControlChange{1, any}, any}};
    const auto rule =
        named("Mod wheel to volume", {volume, {250}}, whenMessage(modWheel, PassThroughV2::EatMatching));
    EXPECT_EQ(inPlainWords(rule),
              "\"Mod wheel to volume\": when controller 1 (Modulation) with any value arrives on any channel "
              "(consume "
              "matching), "
              "send controller 7 (Volume) with the trigger's value on the trigger's channel after 250 ms.");
}

TEST(PlainWords, KeepANameOnOneLineAndInItsQuotes) {
    const auto beginning = [](const std::string& name) {
        const auto line = inPlainWords(named(name, sendBytes(StatusV2::CC, byte(7), byte(0)), anyNoteOn));
        return line.substr(0, line.find(": when"));
    };
    EXPECT_EQ(beginning("a\"b\\c\nd\te\x1f\x7f/é"), "\"a\\\"b\\\\c\\nd\\u0009e\\u001f\\u007f/é\"");
    EXPECT_EQ(beginning(""), "\"\"");
}

TEST(PlainWordsOfATrigger, NameTheNote) {
    EXPECT_EQ(inPlainWords(when(Voice::NoteOn{only(60)})),
              "when note-on 60 (C3) arrives on any channel (pass through)");
    EXPECT_EQ(inPlainWords(anyNoteOn), "when any note-on arrives on any channel (pass through)");
    EXPECT_EQ(inPlainWords(when(Voice::NoteOff{only(127)})),
              "when note-off 127 (G8) arrives on any channel (pass through)");
    EXPECT_EQ(inPlainWords(when(Voice::NoteOff{any})),
              "when any note-off arrives on any channel (pass through)");
}

TEST(PlainWordsOfATrigger, NameTheControllerAndItsValue) {
    EXPECT_EQ(inPlainWords(when(Voice::ControlChange{64, only(127)})),
              "when controller 64 (Sustain) with value 127 arrives on any channel (pass through)");
    EXPECT_EQ(inPlainWords(anyController1),
              "when controller 1 (Modulation) with any value arrives on any channel (pass through)");
}

TEST(PlainWordsOfATrigger, NameTheProgram) {
    EXPECT_EQ(inPlainWords(when(Voice::ProgramChange{only(0)})),
              "when program 0 arrives on any channel (pass through)");
    EXPECT_EQ(inPlainWords(anyProgram), "when any program arrives on any channel (pass through)");
}

TEST(PlainWordsOfATrigger, CountChannelsFromOne) {
    EXPECT_EQ(inPlainWords(when(Voice::NoteOn{any}, only(0))),
              "when any note-on arrives on channel 1 (pass through)");
    EXPECT_EQ(inPlainWords(when(Voice::NoteOn{any}, only(15))),
              "when any note-on arrives on channel 16 (pass through)");
}

TEST(PlainWordsOfATrigger, NameSystemMessages) {
    EXPECT_EQ(inPlainWords(whenMessage(Message::Start{})), "when MIDI Start arrives (pass through)");
    EXPECT_EQ(inPlainWords(whenMessage(Message::Stop{})), "when MIDI Stop arrives (pass through)");
    EXPECT_EQ(inPlainWords(whenMessage(Message::Continue{})), "when MIDI Continue arrives (pass through)");
}

TEST(PlainWordsOfATrigger, NameTheHostsTransport) {
    using Host = HostTransportTriggerVariantsV2;
    EXPECT_EQ(inPlainWords(whenHost(Host::Start, PassThroughV2::PassThrough)),
              "when the host's transport starts (pass through)");
    EXPECT_EQ(inPlainWords(whenHost(Host::Continue, PassThroughV2::EatMatching)),
              "when the host's transport continues (consume matching)");
    EXPECT_EQ(inPlainWords(whenHost(Host::Stop, PassThroughV2::EatNonMatching)),
              "when the host's transport stops (consume non-matching)");
}

TEST(PlainWordsOfATrigger, NameThePolicyOfAMessage) {
    EXPECT_EQ(inPlainWords(whenMessage(Message::Start{}, PassThroughV2::EatMatching)),
              "when MIDI Start arrives (consume matching)");
    EXPECT_EQ(inPlainWords(whenMessage(Message::Start{}, PassThroughV2::EatNonMatching)),
              "when MIDI Start arrives (consume non-matching)");
}

TEST(PlainWordsOfATrigger, NameNoPolicyForLoading) {
    EXPECT_EQ(inPlainWords(RuleTriggerV2(RuleTriggerV2::OnLoad{})), "when the plug-in is loaded");
}

TEST(PlainWordsOfATrigger, MarkWhatNoMessageCanCarry) {
    EXPECT_EQ(inPlainWords(when(Voice::NoteOn{only(128)}, only(16))),
              "when note-on 128 (out of range) arrives on channel 17 (out of range) (pass through)");
}

TEST(PlainWordsOfAnOutput, NameEachKindOfMessage) {
    EXPECT_EQ(words(sendBytes(StatusV2::noteOn, byte(60), byte(100))),
              "send note-on 60 (C3) with velocity 100 on channel 1 at once");
    EXPECT_EQ(words(sendBytes(StatusV2::noteOff, byte(60), byte(0))),
              "send note-off 60 (C3) with velocity 0 on channel 1 at once");
    EXPECT_EQ(words(sendBytes(StatusV2::CC, byte(7), byte(127))),
              "send controller 7 (Volume) with value 127 on channel 1 at once");
    EXPECT_EQ(words(sendBytes(StatusV2::programChange, byte(5), {})), "send program 5 on channel 1 at once");
    EXPECT_EQ(words(sendBytes(StatusV2::channelPressure, byte(9), {})),
              "send channel pressure 9 on channel 1 at once");
}

TEST(PlainWordsOfAnOutput, PutThePitchWheelsTwoBytesTogether) {
    EXPECT_EQ(words(sendBytes(StatusV2::pitchWheel, byte(0), byte(0))),
              "send pitch bend 0 on channel 1 at once");
    EXPECT_EQ(words(sendBytes(StatusV2::pitchWheel, byte(0), byte(64))),
              "send pitch bend 8192 on channel 1 at once");
    EXPECT_EQ(words(sendBytes(StatusV2::pitchWheel, byte(127), byte(127))),
              "send pitch bend 16383 on channel 1 at once");
}

TEST(PlainWordsOfAnOutput, ShowThePitchWheelsBytesWhereTheyMakeNoPosition) {
    EXPECT_EQ(
        words(sendBytes(StatusV2::pitchWheel, byte(1), fromTrigger)),
        "send pitch bend with low byte 1 and high byte from the trigger's velocity on channel 1 at once");
    EXPECT_EQ(words(sendBytes(StatusV2::pitchWheel, fromTrigger, byte(2))),
              "send pitch bend with low byte from the trigger's note and high byte 2 on channel 1 at once");
    EXPECT_EQ(words(sendBytes(StatusV2::pitchWheel, byte(1), {})),
              "send pitch bend with low byte 1 and no high byte on channel 1 at once");
    EXPECT_EQ(words(sendBytes(StatusV2::pitchWheel, byte(128), byte(0))),
              "send pitch bend with low byte 128 (out of range) and high byte 0 on channel 1 at once");
}

TEST(PlainWordsOfAnOutput, SayWhatIsMissingOrSurplus) {
    EXPECT_EQ(words(sendBytes(StatusV2::CC, byte(7), {})),
              "send controller 7 (Volume) without value on channel 1 at once");
    EXPECT_EQ(words(sendBytes(StatusV2::noteOn, byte(7), {})),
              "send note-on 7 (G-2) without velocity on channel 1 at once");
    EXPECT_EQ(words(sendBytes(StatusV2::programChange, byte(5), byte(6))),
              "send program 5 with surplus byte 6 on channel 1 at once");
    EXPECT_EQ(words(sendBytes(StatusV2::channelPressure, byte(5), fromTrigger)),
              "send channel pressure 5 with surplus byte from the trigger's velocity on channel 1 at once");
}

TEST(PlainWordsOfAnOutput, CallCopiedBytesAsTheirTriggerDoes) {
    const auto copy = sendBytes(StatusV2::CC, fromTrigger, fromTrigger);
    EXPECT_EQ(words(copy, anyController1),
              "send the trigger's controller with the trigger's value on channel 1 at once");
    EXPECT_EQ(words(copy, anyNoteOn), "send controller from the trigger's note with value from the trigger's "
                                      "velocity on channel 1 at once");
    EXPECT_EQ(words(copy, when(Voice::NoteOff{any})), words(copy, anyNoteOn));
    EXPECT_EQ(words(copy, anyProgram),
              "send controller from the trigger's program with value from the trigger's "
              "second data byte on channel 1 at once");
    EXPECT_EQ(words(copy, whenMessage(Message::Start{})),
              "send controller from the trigger's first data byte with value from the trigger's second data "
              "byte on "
              "channel 1 at once");
}

TEST(PlainWordsOfAnOutput, SayWhichNoteIsCopied) {
    EXPECT_EQ(words(sendBytes(StatusV2::noteOn, fromTrigger, fromTrigger)),
              "send note-on for the trigger's note with the trigger's velocity on channel 1 at once");
    EXPECT_EQ(words(sendBytes(StatusV2::noteOff, fromTrigger, byte(0)), anyController1),
              "send note-off for the trigger's controller with velocity 0 on channel 1 at once");
}

TEST(PlainWordsOfAnOutput, NameTheChannel) {
    const auto on = [](StatusByteV2 status) {
        return words({Output::Protocol{status, byte(1), byte(2)}, {0}});
    };
    EXPECT_EQ(on(StatusByteV2::JustStatus{StatusV2::CC}),
              "send controller 1 (Modulation) with value 2 on channel 1 at once");
    EXPECT_EQ(on(StatusByteV2::WithChannel{StatusV2::CC, RuleOutputChannelV2::Value{15}}),
              "send controller 1 (Modulation) with value 2 on channel 16 at once");
    EXPECT_EQ(on(StatusByteV2::WithChannel{StatusV2::CC, triggerChannel}),
              "send controller 1 (Modulation) with value 2 on the trigger's channel at once");
    EXPECT_EQ(on(StatusByteV2::WithChannel{StatusV2::CC, RuleOutputChannelV2::Value{16}}),
              "send controller 1 (Modulation) with value 2 on channel 17 (out of range) at once");
}

TEST(PlainWordsOfAnOutput, NameBankAndProgram) {
    EXPECT_EQ(words({Output::ProgramChange{RuleOutputChannelV2::Value{4}, 2, byte(5)}, {0}}),
              "send bank 2 and program 5 on channel 5 at once");
    EXPECT_EQ(words({Output::ProgramChange{triggerChannel, 200, fromTrigger}, {0}}, anyProgram),
              "send bank 200 (out of range) and the trigger's program on the trigger's channel at once");
}

TEST(PlainWordsOfAnOutput, ShowSystemExclusiveInHexadecimalWithItsFraming) {
    EXPECT_EQ(words({Output::SystemExclusive{{}}, {0}}), "send system exclusive f0 f7 (2 bytes) at once");
    EXPECT_EQ(words({Output::SystemExclusive{{0x7E, 0x7F, 0x09, 0x01}}, {0}}),
              "send system exclusive f0 7e 7f 09 01 f7 (6 bytes) at once");
}

TEST(PlainWordsOfAnOutput, ShowTheBeginningOfLongSystemExclusive) {
    std::vector<std::uint8_t> body(16);
    std::iota(body.begin(), body.end(), std::uint8_t{1});
    EXPECT_EQ(
        words({Output::SystemExclusive{body}, {0}}),
        "send system exclusive f0 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 f7 (18 bytes) at once");
    body.push_back(0x11);
    EXPECT_EQ(
        words({Output::SystemExclusive{body}, {0}}),
        "send system exclusive f0 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 ... f7 (19 bytes) at once");
}

TEST(PlainWordsOfAnOutput, NameTheDelay) {
    auto output = sendBytes(StatusV2::programChange, byte(5), {});
    output.delay.ms = 1;
    EXPECT_EQ(words(output), "send program 5 on channel 1 after 1 ms");
    output.delay.ms = 9'223'372'036'854'775'807;
    EXPECT_EQ(words(output), "send program 5 on channel 1 after 9223372036854775807 ms");
    output.delay.ms = -5;
    EXPECT_EQ(words(output), "send program 5 on channel 1 after -5 (out of range) ms");
}

}  // namespace
}  // namespace quillo
