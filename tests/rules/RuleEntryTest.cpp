// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/RuleEntry.hpp"

#include <gtest/gtest.h>

#include "platform/FatalError.hpp"
#include "support/EveryEntry.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Output = RuleOutputVariantsV2;

TEST(RuleEntry, ItsDefaultsAreTheSharedOnes) {
    const RuleEntry entry;
    EXPECT_EQ(entry.output.channel, channel(0));
    EXPECT_EQ(entry.output.note, byte(60));
    EXPECT_EQ(entry.output.velocity, byte(64));
    EXPECT_EQ(entry.output.pitch.value, 8192);
    EXPECT_EQ(entry.output.bank, 0);
    EXPECT_EQ(entry.output.program, byte(0));
    EXPECT_EQ(entry.output.pressure, 0);
    EXPECT_EQ(entry.output.controller, byte(0));
    EXPECT_EQ(entry.output.controllerValue, byte(0));
    EXPECT_TRUE(entry.output.systemExclusive.empty());
    EXPECT_EQ(entry.output.delay.ms, 0);
    EXPECT_EQ(entry.trigger.type, TriggerEntryType::OnLoad);
    EXPECT_EQ(entry.trigger.channel, any);
    EXPECT_EQ(entry.trigger.note, any);
    EXPECT_EQ(entry.trigger.controller, 0);
    EXPECT_EQ(entry.trigger.controllerValue, any);
    EXPECT_EQ(entry.trigger.program, any);
    EXPECT_EQ(entry.trigger.passThrough, PassThroughV2::PassThrough);
}

TEST(RuleEntry, ANewOneIsNamedAfterItsIndex) {
    const auto entry = defaultEntry(OutputEntryType::PitchWheel, 3);
    EXPECT_EQ(entry.name, "Message #3");
    EXPECT_EQ(entry.output.type, OutputEntryType::PitchWheel);
    EXPECT_EQ(entry.trigger, RuleTriggerEntry{});
}

TEST(RuleEntry, ADefaultNoteOnIsNote60OnTheFirstChannelWithVelocity64AtOnce) {
    EXPECT_EQ(ruleFromEntry(defaultEntry(OutputEntryType::NoteOn, 1)),
              rule(onLoad(), send(noteOn(0, 60, 64)), "Message #1"));
}

TEST(RuleEntry, EachOutputTypeUsesItsOwnFields) {
    RuleEntry entry;
    entry.output = {.type = OutputEntryType::NoteOn,
                    .channel = triggerChannel,
                    .note = byte(1),
                    .velocity = triggerByte,
                    .pitch = {300},
                    .bank = 3,
                    .program = byte(4),
                    .pressure = 100,
                    .controller = byte(6),
                    .controllerValue = byte(7),
                    .systemExclusive = {0xF0, 0x7E, 0xF7},
                    .delay = {9}};
    const auto messageOf = [&](OutputEntryType type) {
        entry.output.type = type;
        const auto output = ruleFromEntry(entry).output;
        EXPECT_EQ(output.delay.ms, 9);
        return output.message;
    };
    EXPECT_EQ(messageOf(OutputEntryType::NoteOn),
              protocol(StatusV2::noteOn, triggerChannel, byte(1), triggerByte));
    EXPECT_EQ(messageOf(OutputEntryType::NoteOff),
              protocol(StatusV2::noteOff, triggerChannel, byte(1), triggerByte));
    EXPECT_EQ(messageOf(OutputEntryType::ControlChange),
              protocol(StatusV2::CC, triggerChannel, byte(6), byte(7)));
    EXPECT_EQ(messageOf(OutputEntryType::ProgramChange), programChange(triggerChannel, 3, byte(4)));
    EXPECT_EQ(messageOf(OutputEntryType::ChannelPressure),
              protocol(StatusV2::channelPressure, triggerChannel, byte(100)));
    EXPECT_EQ(messageOf(OutputEntryType::PitchWheel),
              protocol(StatusV2::pitchWheel, triggerChannel, byte(300 & 0x7F), byte(300 >> 7)));
    EXPECT_EQ(messageOf(OutputEntryType::SystemExclusive), systemExclusive({0xF0, 0x7E, 0xF7}));
}

TEST(RuleEntry, EachTriggerTypeUsesItsOwnFields) {
    constexpr auto policy = PassThroughV2::EatNonMatching;
    RuleEntry entry;
    entry.trigger = {.type = TriggerEntryType::OnLoad,
                     .channel = exactly(2),
                     .note = exactly(61),
                     .controller = 7,
                     .controllerValue = exactly(8),
                     .program = exactly(9),
                     .passThrough = policy};
    const auto triggerOf = [&](TriggerEntryType type) {
        entry.trigger.type = type;
        return ruleFromEntry(entry).trigger;
    };
    EXPECT_EQ(triggerOf(TriggerEntryType::OnLoad), onLoad());
    EXPECT_EQ(triggerOf(TriggerEntryType::NoteOn), onNoteOn(exactly(61), exactly(2), policy));
    EXPECT_EQ(triggerOf(TriggerEntryType::NoteOff), onNoteOff(exactly(61), exactly(2), policy));
    EXPECT_EQ(triggerOf(TriggerEntryType::ControlChange), onControlChange(7, exactly(8), exactly(2), policy));
    EXPECT_EQ(triggerOf(TriggerEntryType::ProgramChange), onProgramChange(exactly(9), exactly(2), policy));
    EXPECT_EQ(triggerOf(TriggerEntryType::MIDIStart), onMIDIStart(policy));
    EXPECT_EQ(triggerOf(TriggerEntryType::MIDIContinue), onMIDIContinue(policy));
    EXPECT_EQ(triggerOf(TriggerEntryType::MIDIStop), onMIDIStop(policy));
    EXPECT_EQ(triggerOf(TriggerEntryType::HostStart), onHost(HostTransportTriggerVariantsV2::Start, policy));
    EXPECT_EQ(triggerOf(TriggerEntryType::HostContinue),
              onHost(HostTransportTriggerVariantsV2::Continue, policy));
    EXPECT_EQ(triggerOf(TriggerEntryType::HostStop), onHost(HostTransportTriggerVariantsV2::Stop, policy));
}

TEST(RuleEntry, EveryPitchSurvivesTheWayThereAndBack) {
    auto entry = defaultEntry(OutputEntryType::PitchWheel, 1);
    for (std::uint16_t pitch = 0; pitch <= 16383; ++pitch) {
        entry.output.pitch.value = pitch;
        ASSERT_EQ(entryFromRule(ruleFromEntry(entry)), entry);
    }
}

TEST(RuleEntry, TheCentreAndTheTopOfThePitchWheelHaveTheirBytes) {
    auto entry = defaultEntry(OutputEntryType::PitchWheel, 1);
    EXPECT_EQ(ruleFromEntry(entry).output.message,
              protocol(StatusV2::pitchWheel, channel(0), byte(0), byte(64)));
    entry.output.pitch.value = 16383;
    EXPECT_EQ(ruleFromEntry(entry).output.message,
              protocol(StatusV2::pitchWheel, channel(0), byte(127), byte(127)));
}

TEST(RuleEntry, EveryEntryBecomesARuleAndThatRuleIsTheSameAfterEveryFurtherWay) {
    for (const auto& entry : everyEntry()) {
        const auto rule = ruleFromEntry(entry);
        ASSERT_EQ(whyNoEntry(rule), std::nullopt);
        const auto again = entryFromRule(rule);
        ASSERT_EQ(ruleFromEntry(again), rule);
        ASSERT_EQ(again.output.type, entry.output.type);
        ASSERT_EQ(again.trigger.type, entry.trigger.type);
        ASSERT_EQ(again.name, entry.name);
    }
}

TEST(RuleEntry, FieldsThatARuleDoesNotCarryHaveTheirDefaults) {
    RuleEntry expected;
    expected.output.type = OutputEntryType::SystemExclusive;
    expected.output.systemExclusive = {1, 2};
    expected.output.delay.ms = 5;
    expected.trigger.type = TriggerEntryType::MIDIStop;
    expected.trigger.passThrough = PassThroughV2::EatMatching;
    expected.name = "x";
    EXPECT_EQ(
        entryFromRule(rule(onMIDIStop(PassThroughV2::EatMatching), send(systemExclusive({1, 2}), 5), "x")),
        expected);
}

TEST(RuleEntry, AProgramChangeWithoutABankBecomesOneOfBankZero) {
    const auto entry =
        entryFromRule(rule(onLoad(), send(protocol(StatusV2::programChange, channel(3), byte(9)))));
    EXPECT_EQ(entry.output.type, OutputEntryType::ProgramChange);
    EXPECT_EQ(entry.output.channel, channel(3));
    EXPECT_EQ(entry.output.bank, 0);
    EXPECT_EQ(entry.output.program, byte(9));
}

TEST(RuleEntry, AStatusWithoutChannelIsTheFirstChannel) {
    const auto entry = entryFromRule(
        rule(onLoad(), send(Output::Protocol{StatusByteV2::JustStatus{StatusV2::CC}, byte(7), byte(8)})));
    EXPECT_EQ(entry.output.channel, channel(0));
    EXPECT_EQ(entry.output.controller, byte(7));
}

TEST(RuleEntry, EditingChangesNothingElseInAnyMessageOfTheEditorsOwn) {
    for (const auto& entry : everyEntry()) {
        ASSERT_EQ(whatEditingChanges(ruleFromEntry(entry)), std::nullopt);
    }
}

TEST(RuleEntry, AStatusWithoutChannelSendsTheSameAfterEditing) {
    const Output message = Output::Protocol{StatusByteV2::JustStatus{StatusV2::CC}, byte(7), byte(8)};
    EXPECT_EQ(whatEditingChanges(rule(onLoad(), send(message))), std::nullopt);
}

TEST(RuleEntry, ARuleThatIsNoEntryIsNotEdited) {
    const auto message = protocol(StatusV2::channelPressure, channel(0), triggerByte, byte(1));
    EXPECT_EQ(whatEditingChanges(rule(onNoteOn(), send(message))), std::nullopt);
}

class MessageThatEditingChanges : public testing::TestWithParam<std::pair<Output, std::string>> {};

TEST_P(MessageThatEditingChanges, SaysWhatBecomesOfIt) {
    const auto& [message, change] = GetParam();
    const auto loaded = rule(onNoteOn(), send(message), "old");
    EXPECT_EQ(whatEditingChanges(loaded), change);
    EXPECT_NE(ruleFromEntry(entryFromRule(loaded)), loaded);
}

INSTANTIATE_TEST_SUITE_P(
    Every, MessageThatEditingChanges,
    testing::Values(std::pair{protocol(StatusV2::programChange, channel(3), byte(9)),
                              std::string("its program change has no bank, and gets bank 0")},
                    std::pair{protocol(StatusV2::programChange, triggerChannel, triggerByte),
                              std::string("its program change has no bank, and gets bank 0")},
                    std::pair{protocol(StatusV2::channelPressure, channel(0), byte(9), byte(1)),
                              std::string("its pressure has a second data byte, and loses it")},
                    std::pair{protocol(StatusV2::pitchWheel, channel(0), byte(128), byte(1)),
                              std::string("its pitch has data bytes above 127, and gets others")},
                    std::pair{protocol(StatusV2::pitchWheel, channel(0), byte(127), byte(255)),
                              std::string("its pitch has data bytes above 127, and gets others")}));

class RuleTheEditorCannotHold : public testing::TestWithParam<std::pair<Output, std::string>> {};

TEST_P(RuleTheEditorCannotHold, HasAReasonAndIsFatalToConvert) {
    const auto& [output, reason] = GetParam();
    const auto unheld = rule(onNoteOn(), send(output), "odd");
    EXPECT_EQ(whyNoEntry(unheld), reason);
    try {
        static_cast<void>(entryFromRule(unheld));
        FAIL() << "it was converted";
    } catch (const FatalError& error) {
        const std::string text = error.what();
        EXPECT_TRUE(text.starts_with("Fatal error")) << text;
        EXPECT_NE(text.find("RuleEntry"), std::string::npos) << text;
        EXPECT_NE(text.find(reason), std::string::npos) << text;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Every, RuleTheEditorCannotHold,
    testing::Values(
        std::pair{protocol(StatusV2::channelPressure, channel(0), triggerByte),
                  std::string("its pressure is copied from the trigger")},
        std::pair{protocol(StatusV2::channelPressure, channel(0), byte(1), triggerByte),
                  std::string("its second data byte is copied from the trigger")},
        std::pair{protocol(StatusV2::programChange, channel(0), byte(1), triggerByte),
                  std::string("its second data byte is copied from the trigger")},
        std::pair{protocol(StatusV2::pitchWheel, channel(0), triggerByte, byte(1)),
                  std::string("its pitch is copied from the trigger")},
        std::pair{protocol(StatusV2::pitchWheel, channel(0), byte(1), triggerByte),
                  std::string("its pitch is copied from the trigger")},
        std::pair{protocol(StatusV2::pitchWheel, channel(0), byte(1)),
                  std::string("its pitch has one data byte only")},
        std::pair{protocol(StatusV2::noteOn, channel(0), byte(1)), std::string("its note has no velocity")},
        std::pair{protocol(StatusV2::noteOff, channel(0), byte(1)), std::string("its note has no velocity")},
        std::pair{protocol(StatusV2::CC, channel(0), byte(1)), std::string("its controller has no value")}));

TEST(Pitch, IsEqualAndHashedByItsValue) {
    EXPECT_EQ(Pitch{5}, Pitch{5});
    EXPECT_NE(Pitch{5}, Pitch{6});
    EXPECT_EQ(std::hash<Pitch>()(Pitch{5}), std::hash<Pitch>()(Pitch{5}));
}

}  // namespace
}  // namespace quillo
