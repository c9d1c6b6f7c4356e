// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/TriggerChoices.hpp"

#include <gtest/gtest.h>

#include "engine/MessageContent.hpp"
#include "engine/RuleCompiler.hpp"
#include "support/EveryEntry.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

TEST(TriggerChoices, OnlyChannelMessagesOfferTheirChannelAndEachItsOwnBytes) {
    for (const auto trigger : everyTriggerType()) {
        const bool note = trigger == TriggerEntryType::NoteOn || trigger == TriggerEntryType::NoteOff;
        const bool controller = trigger == TriggerEntryType::ControlChange;
        const bool program = trigger == TriggerEntryType::ProgramChange;
        EXPECT_EQ(triggerChoices(trigger),
                  (TriggerChoices{note || controller || program, note, controller, program}));
    }
}

TEST(TriggerChoices, EveryOutputButSystemExclusiveHasAChannel) {
    for (const auto output : everyOutputType()) {
        EXPECT_EQ(hasChannel(output), output != OutputEntryType::SystemExclusive);
    }
}

RuleEntry noteEntry(GenericByteV2 note) {
    auto entry = defaultEntry(OutputEntryType::NoteOn, 1);
    entry.trigger.type = TriggerEntryType::NoteOn;
    entry.output.note = note;
    return entry;
}

TEST(TriggerChoices, ACopiedNoteFallsBackTo60WhenTheTriggerBecomesAControlChange) {
    EXPECT_EQ(withUsableChoices(TriggerEntryType::ControlChange, noteEntry(triggerByte)).output.note,
              byte(60));
    EXPECT_EQ(withUsableChoices(TriggerEntryType::ControlChange, noteEntry(byte(72))).output.note, byte(72));
    EXPECT_EQ(withUsableChoices(TriggerEntryType::NoteOff, noteEntry(triggerByte)).output.note, triggerByte);
}

TEST(TriggerChoices, ACopiedChannelFallsBackToTheFirstWhenTheTriggerHasNone) {
    auto entry = noteEntry(byte(1));
    entry.output.channel = triggerChannel;
    EXPECT_EQ(withUsableChoices(TriggerEntryType::OnLoad, entry).output.channel, channel(0));
    EXPECT_EQ(withUsableChoices(TriggerEntryType::ProgramChange, entry).output.channel, triggerChannel);
    entry.output.channel = channel(7);
    EXPECT_EQ(withUsableChoices(TriggerEntryType::OnLoad, entry).output.channel, channel(7));
}

TEST(TriggerChoices, ASystemExclusiveOutputIsLeftAsItIs) {
    for (const auto& output : everyOutput(OutputEntryType::SystemExclusive)) {
        RuleEntry entry;
        entry.output = output;
        EXPECT_EQ(withUsableChoices(TriggerEntryType::OnLoad, entry), entry);
    }
}

/// Whether every copied field that the output uses is one that its editor offers.
bool offersAllItHolds(const RuleOutputEntry& output, const TriggerChoices& offered) {
    const auto usable = [](const GenericByteV2& field, bool isOffered) {
        return isOffered || !field.is<GenericByteV2::RespectiveTriggerByte>();
    };
    if (hasChannel(output.type) && !offered.channel && output.channel == triggerChannel) {
        return false;
    }
    switch (output.type) {
    case OutputEntryType::NoteOn:
    case OutputEntryType::NoteOff:
        return usable(output.note, offered.noteAndVelocity) &&
               usable(output.velocity, offered.noteAndVelocity);
    case OutputEntryType::ControlChange:
        return usable(output.controller, offered.controllerAndValue) &&
               usable(output.controllerValue, offered.controllerAndValue);
    case OutputEntryType::ProgramChange: return usable(output.program, offered.program);
    default: return true;
    }
}

TEST(TriggerChoices, AChangeOfTriggerLeavesNothingThatTheEditorWouldNotOffer) {
    for (const auto& entry : everyEntry()) {
        for (const auto trigger : everyTriggerType()) {
            const auto changed = withUsableChoices(trigger, entry);
            ASSERT_TRUE(offersAllItHolds(changed.output, triggerChoices(trigger)));
            ASSERT_EQ(withUsableChoices(trigger, changed), changed);
            ASSERT_EQ(changed.trigger, entry.trigger);
            ASSERT_EQ(changed.name, entry.name);
        }
    }
}

TEST(TriggerChoices, AChangeOfTriggerTouchesNothingThatIsFixedOrThatTheTriggerFeeds) {
    for (const auto& entry : everyEntry()) {
        for (const auto trigger : everyTriggerType()) {
            if (offersAllItHolds(entry.output, triggerChoices(trigger))) {
                ASSERT_EQ(withUsableChoices(trigger, entry), entry);
            }
        }
    }
}

TEST(TriggerChoices, AChangedEntryAlwaysCompiles) {
    for (const auto& entry : everyEntry()) {
        auto changed = withUsableChoices(TriggerEntryType::HostStop, entry);
        changed.trigger.type = TriggerEntryType::HostStop;
        ASSERT_NO_THROW(static_cast<void>(compileRules({ruleFromEntry(changed)}, 44100)));
    }
}

TEST(TriggerChoices, AnOutputIsFixedExactlyWhenTheEngineCanSendItByHand) {
    for (const auto type : everyOutputType()) {
        for (const auto& output : everyOutput(type)) {
            RuleEntry entry;
            entry.output = output;
            const auto content = compile(ruleFromEntry(entry).output.message);
            ASSERT_EQ(isFixed(output), content.is<MessageContent::Bytes>());
        }
    }
}

}  // namespace
}  // namespace quillo
