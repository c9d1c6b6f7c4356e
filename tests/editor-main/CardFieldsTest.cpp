// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <map>

#include "editor-main/EditorStage.hpp"
#include "rules/MIDIVocabulary.hpp"
#include "support/EveryEntry.hpp"

namespace quillo {
namespace {

using namespace test;
using Captions = std::vector<std::string>;

std::vector<Rule> oneOf(TriggerEntryType trigger, OutputEntryType output) {
    return {ruleWith([=](RuleEntry& entry) {
        entry.trigger.type = trigger;
        entry.output.type = output;
    })};
}

std::string nameOf(TriggerEntryType type) {
    for (const auto& item : triggerTypeMenu()) {
        if (item.value == type) {
            return item.label;
        }
    }
    return "?";
}

/// Whether a trigger has something that the field under this caption can take.
bool feeds(TriggerEntryType trigger, const std::string& caption) {
    const bool isNote = trigger == TriggerEntryType::NoteOn || trigger == TriggerEntryType::NoteOff;
    const bool isControl = trigger == TriggerEntryType::ControlChange;
    const bool isProgram = trigger == TriggerEntryType::ProgramChange;
    const std::map<std::string, bool> fed{{"Ch", isNote || isControl || isProgram},
                                          {"Note", isNote},
                                          {"Velocity", isNote},
                                          {"Controller", isControl},
                                          {"Value", isControl},
                                          {"Program", isProgram}};
    const auto found = fed.find(caption);
    return found != fed.end() && found->second;
}

class EachTrigger : public testing::TestWithParam<std::pair<TriggerEntryType, Captions>> {};

TEST_P(EachTrigger, HasItsFieldsInOrder) {
    const auto& [type, expected] = GetParam();
    EditorStage stage(oneOf(type, OutputEntryType::NoteOn));
    EXPECT_EQ(captions(stage.card().trigger()), expected);
}

INSTANTIATE_TEST_SUITE_P(
    CardFields, EachTrigger,
    testing::Values(std::pair(TriggerEntryType::OnLoad, Captions{"Type"}),
                    std::pair(TriggerEntryType::NoteOn, Captions{"Type", "Ch", "Note", "Incoming"}),
                    std::pair(TriggerEntryType::NoteOff, Captions{"Type", "Ch", "Note", "Incoming"}),
                    std::pair(TriggerEntryType::ControlChange,
                              Captions{"Type", "Ch", "Controller", "Value", "Incoming"}),
                    std::pair(TriggerEntryType::ProgramChange, Captions{"Type", "Ch", "Program", "Incoming"}),
                    std::pair(TriggerEntryType::MIDIStart, Captions{"Type", "Incoming"}),
                    std::pair(TriggerEntryType::MIDIContinue, Captions{"Type", "Incoming"}),
                    std::pair(TriggerEntryType::MIDIStop, Captions{"Type", "Incoming"}),
                    std::pair(TriggerEntryType::HostStart, Captions{"Type", "Incoming"}),
                    std::pair(TriggerEntryType::HostContinue, Captions{"Type", "Incoming"}),
                    std::pair(TriggerEntryType::HostStop, Captions{"Type", "Incoming"})));

class EachOutput : public testing::TestWithParam<std::pair<OutputEntryType, Captions>> {};

TEST_P(EachOutput, HasItsFieldsInOrderUnderEveryTrigger) {
    const auto& [type, expected] = GetParam();
    for (const auto trigger : everyTriggerType()) {
        EditorStage stage(oneOf(trigger, type));
        EXPECT_EQ(captions(stage.card().output()), expected) << nameOf(trigger);
    }
}

TEST_P(EachOutput, OffersFromTriggerExactlyWhereTheTriggerCanFeedTheField) {
    for (const auto trigger : everyTriggerType()) {
        EditorStage stage(oneOf(trigger, GetParam().first));
        const auto& output = stage.card().output();
        for (const auto& caption : captions(output)) {
            EXPECT_EQ(stage.offers(field(output, caption), "From Trigger"), feeds(trigger, caption))
                << caption << " under " << nameOf(trigger);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    CardFields, EachOutput,
    testing::Values(
        std::pair(OutputEntryType::NoteOn, Captions{"Type", "Ch", "Note", "Velocity", "Delay (ms)"}),
        std::pair(OutputEntryType::NoteOff, Captions{"Type", "Ch", "Note", "Velocity", "Delay (ms)"}),
        std::pair(OutputEntryType::ControlChange,
                  Captions{"Type", "Ch", "Controller", "Value", "Delay (ms)"}),
        std::pair(OutputEntryType::ProgramChange, Captions{"Type", "Ch", "Bank", "Program", "Delay (ms)"}),
        std::pair(OutputEntryType::ChannelPressure, Captions{"Type", "Ch", "Pressure", "Delay (ms)"}),
        std::pair(OutputEntryType::PitchWheel, Captions{"Type", "Ch", "Pitch", "Delay (ms)"}),
        std::pair(OutputEntryType::SystemExclusive, Captions{"Type", "Bytes (hex)", "Delay (ms)"})));

TEST(CardFields, PickersOfATriggerOfferAnyEveryValueAndARange) {
    EditorStage stage(oneOf(TriggerEntryType::NoteOn, OutputEntryType::NoteOn));
    const auto rows = [&stage](const juce::String& caption) {
        EditorStage::openMenu(field(stage.card().trigger(), caption));
        const auto count = stage.menu().shownRows().size();
        key(stage.window, juce::KeyPress::escapeKey);
        return count;
    };
    EXPECT_EQ(rows("Type"), 11U);
    EXPECT_EQ(rows("Ch"), 17U);
    EXPECT_EQ(rows("Note"), 130U);
    EXPECT_EQ(rows("Incoming"), 3U);
    stage.pick(field(stage.card().trigger(), "Type"), "CC");
    EXPECT_EQ(rows("Controller"), 128U);
    EXPECT_EQ(rows("Value"), 2U);
}

TEST(CardFields, PickersOfAMessageOfferFromTriggerBeforeEveryValue) {
    EditorStage stage(oneOf(TriggerEntryType::NoteOn, OutputEntryType::NoteOn));
    const auto rows = [&stage](const juce::String& caption) {
        EditorStage::openMenu(field(stage.card().output(), caption));
        const auto count = stage.menu().shownRows().size();
        key(stage.window, juce::KeyPress::escapeKey);
        return count;
    };
    EXPECT_EQ(rows("Type"), 9U);
    EXPECT_EQ(rows("Ch"), 17U);
    EXPECT_EQ(rows("Note"), 129U);
    EXPECT_EQ(rows("Velocity"), 1U);
    stage.pick(field(stage.card().output(), "Type"), "CC");
    EXPECT_EQ(rows("Ch"), 17U);
    EXPECT_EQ(rows("Controller"), 128U);
    stage.pick(field(stage.card().output(), "Type"), "Program Change");
    EXPECT_EQ(rows("Program"), 128U);
}

TEST(CardFields, ALongMenuOpensAtTheCurrentValue) {
    EditorStage stage({ruleWith([](RuleEntry& entry) { entry.output.note = GenericByteV2::Value{64}; })});
    EditorStage::openMenu(field(stage.card().output(), "Note"));
    EXPECT_EQ(stage.menu().highlightedRow(), 63U) << "127 stands in the first row.";
    EXPECT_FALSE(stage.menu().rowArea(63).isEmpty());
}

}  // namespace
}  // namespace quillo
