// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/TriggerPattern.hpp"

#include <gtest/gtest.h>

#include "support/OutputRecorder.hpp"
#include "support/ReferenceEngine.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

const MessageBasedTriggerVariantsV2& variantsOf(const RuleTriggerV2& trigger) {
    return trigger.getIf<RuleTriggerV2::MessageBased>()->trigger.variants;
}

/// Compares pattern and plain meaning for every status byte and many data bytes.
void expectSameMeaning(const RuleTriggerV2& trigger) {
    const TriggerPattern pattern(variantsOf(trigger));
    for (unsigned status = 0; status < 256; ++status) {
        for (const std::uint8_t data1 : Bytes{0, 1, 60, 64, 127, 128, 188, 255}) {
            for (const std::uint8_t data2 : Bytes{0, 1, 100, 127, 128, 255}) {
                const TriggerBytes message{static_cast<std::uint8_t>(status), data1, data2};
                ASSERT_EQ(pattern.firstFailure(message), firstFailure(variantsOf(trigger), message))
                    << status << " " << int{data1} << " " << int{data2};
            }
        }
    }
}

TEST(TriggerPattern, MeansTheSameAsTheTriggerForEveryKindChannelAndValue) {
    for (const auto& onChannel : {any, exactly(0), exactly(9), exactly(15)}) {
        for (const auto& value : {any, exactly(0), exactly(60), exactly(127), exactly(188)}) {
            expectSameMeaning(onNoteOn(value, onChannel));
            expectSameMeaning(onNoteOff(value, onChannel));
            expectSameMeaning(onProgramChange(value, onChannel));
            expectSameMeaning(onControlChange(64, value, onChannel));
            expectSameMeaning(onControlChange(255, value, onChannel));
        }
    }
    expectSameMeaning(onMIDIStart());
    expectSameMeaning(onMIDIStop());
    expectSameMeaning(onMIDIContinue());
}

TEST(TriggerPattern, SaysWhichConditionFailsFirst) {
    const TriggerPattern pattern(variantsOf(onControlChange(64, exactly(127), exactly(2))));
    EXPECT_EQ(pattern.firstFailure({0x91, 1, 1}), TriggerCondition::kind);
    EXPECT_EQ(pattern.firstFailure({0xB1, 1, 1}), TriggerCondition::channel);
    EXPECT_EQ(pattern.firstFailure({0xB2, 1, 1}), TriggerCondition::data1);
    EXPECT_EQ(pattern.firstFailure({0xB2, 64, 1}), TriggerCondition::data2);
    EXPECT_EQ(pattern.firstFailure({0xB2, 64, 127}), std::nullopt);
}

TEST(TriggerPattern, ASystemMessageHasNoChannelToFailBy) {
    EXPECT_EQ(TriggerPattern(variantsOf(onMIDIStart())).firstFailure({0xFB, 0, 0}), TriggerCondition::kind);
}

TEST(TriggerPattern, TheOneWithoutATriggerHasNothingToFailBy) {
    EXPECT_EQ(TriggerPattern().firstFailure({0xF8, 1, 2}), std::nullopt);
}

TEST(TriggerPattern, ANoteOnOfVelocityZeroIsANoteOn) {
    EXPECT_EQ(TriggerPattern(variantsOf(onNoteOn())).firstFailure({0x93, 60, 0}), std::nullopt);
    EXPECT_EQ(TriggerPattern(variantsOf(onNoteOff())).firstFailure({0x93, 60, 0}), TriggerCondition::kind);
}

TEST(TriggerPattern, AChannelThatNoMessageHasMatchesNothing) {
    expectSameMeaning(onNoteOn(any, exactly(16)));
    expectSameMeaning(onNoteOn(any, exactly(255)));
}

}  // namespace
}  // namespace quillo
