// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <memory>

#include "editor-main/EditorStage.hpp"
#include "rules/TriggerChoices.hpp"
#include "support/EveryEntry.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Texts = std::vector<std::string>;

/// One card whose deeds are compared with what reaches the engine.
class RuleCard : public testing::Test {
protected:
    void open(const RuleEntry& entry) {
        expected_ = entry;
        stage = std::make_unique<EditorStage>(std::vector{ruleFromEntry(entry)});
    }
    void open(TriggerEntryType trigger, OutputEntryType output) {
        RuleEntry entry;
        entry.trigger.type = trigger;
        entry.output.type = output;
        open(entry);
    }

    FieldView& trigger(const juce::String& caption) { return field(stage->card().trigger(), caption); }
    FieldView& output(const juce::String& caption) { return field(stage->card().output(), caption); }

    /// The engine must run the entry that was opened, with this change and those before.
    template <class Change>
    void expectInstalled(Change change) {
        change(expected_);
        EXPECT_EQ(stage->installed(), std::vector{ruleFromEntry(expected_)});
        EXPECT_EQ(stage->entry(0), expected_);
    }

    std::unique_ptr<EditorStage> stage;

private:
    RuleEntry expected_;
};

TEST_F(RuleCard, TypedNamesReachTheEngine) {
    open(TriggerEntryType::OnLoad, OutputEntryType::NoteOn);
    stage->typeInto(stage->card().header(), "Fill B");
    expectInstalled([](RuleEntry& entry) { entry.name = "Fill B"; });
    EXPECT_EQ(stage->card().getTitle(), "Fill B");
}

TEST_F(RuleCard, FieldsOfANoteTriggerReachTheEngine) {
    open(TriggerEntryType::NoteOn, OutputEntryType::NoteOn);
    stage->pick(trigger("Ch"), "3");
    expectInstalled([](RuleEntry& entry) { entry.trigger.channel = exactly(2); });
    stage->pick(trigger("Note"), "60 (C3)");
    expectInstalled([](RuleEntry& entry) { entry.trigger.note = exactly(60); });
    stage->pick(trigger("Note"), "Any");
    expectInstalled([](RuleEntry& entry) { entry.trigger.note = any; });
    stage->pick(trigger("Incoming"), "Consume matching");
    expectInstalled([](RuleEntry& entry) { entry.trigger.passThrough = PassThroughV2::EatMatching; });
    EXPECT_EQ(texts(stage->card().trigger()), (Texts{"Note On", "3", "Any", "Consume matching"}));
}

TEST_F(RuleCard, FieldsOfAControlChangeTriggerReachTheEngine) {
    open(TriggerEntryType::ControlChange, OutputEntryType::NoteOn);
    stage->pick(trigger("Controller"), "7 : Volume");
    expectInstalled([](RuleEntry& entry) { entry.trigger.controller = 7; });
    stage->typeInto(trigger("Value"), "100");
    expectInstalled([](RuleEntry& entry) { entry.trigger.controllerValue = exactly(100); });
    stage->pick(trigger("Value"), "Any");
    expectInstalled([](RuleEntry& entry) { entry.trigger.controllerValue = any; });
}

TEST_F(RuleCard, FieldsOfAProgramChangeTriggerReachTheEngine) {
    open(TriggerEntryType::ProgramChange, OutputEntryType::NoteOn);
    stage->typeInto(trigger("Program"), "12");
    expectInstalled([](RuleEntry& entry) { entry.trigger.program = exactly(12); });
}

TEST_F(RuleCard, FieldsOfANoteReachTheEngine) {
    open(TriggerEntryType::NoteOn, OutputEntryType::NoteOn);
    stage->pick(output("Ch"), "From Trigger");
    expectInstalled([](RuleEntry& entry) { entry.output.channel = triggerChannel; });
    stage->pick(output("Ch"), "16");
    expectInstalled([](RuleEntry& entry) { entry.output.channel = channel(15); });
    stage->pick(output("Note"), "From Trigger");
    expectInstalled([](RuleEntry& entry) { entry.output.note = triggerByte; });
    stage->pick(output("Note"), "0 (C-2)");
    expectInstalled([](RuleEntry& entry) { entry.output.note = byte(0); });
    stage->pick(output("Velocity"), "From Trigger");
    expectInstalled([](RuleEntry& entry) { entry.output.velocity = triggerByte; });
    stage->typeInto(output("Velocity"), "200");
    expectInstalled([](RuleEntry& entry) { entry.output.velocity = byte(127); });
    stage->typeInto(output("Delay (ms)"), "250");
    expectInstalled([](RuleEntry& entry) { entry.output.delay.ms = 250; });
    EXPECT_EQ(texts(stage->card().output()), (Texts{"Note On", "16", "0 (C-2)", "127", "250"}));
}

TEST_F(RuleCard, FieldsOfAControlChangeReachTheEngine) {
    open(TriggerEntryType::ControlChange, OutputEntryType::ControlChange);
    stage->pick(output("Controller"), "1 : Mod");
    expectInstalled([](RuleEntry& entry) { entry.output.controller = byte(1); });
    stage->pick(output("Value"), "From Trigger");
    expectInstalled([](RuleEntry& entry) { entry.output.controllerValue = triggerByte; });
    stage->typeInto(output("Value"), "300");
    expectInstalled([](RuleEntry& entry) { entry.output.controllerValue = byte(64); });
}

TEST_F(RuleCard, FieldsOfAProgramChangeReachTheEngine) {
    open(TriggerEntryType::ProgramChange, OutputEntryType::ProgramChange);
    stage->typeInto(output("Bank"), "3");
    expectInstalled([](RuleEntry& entry) { entry.output.bank = 3; });
    stage->pick(output("Program"), "From Trigger");
    expectInstalled([](RuleEntry& entry) { entry.output.program = triggerByte; });
    stage->pick(output("Program"), "11");
    expectInstalled([](RuleEntry& entry) { entry.output.program = byte(11); });
}

TEST_F(RuleCard, TypedPressureReachesTheEngine) {
    open(TriggerEntryType::OnLoad, OutputEntryType::ChannelPressure);
    stage->typeInto(output("Pressure"), "99");
    expectInstalled([](RuleEntry& entry) { entry.output.pressure = 99; });
}

TEST_F(RuleCard, TypedPitchReachesTheEngine) {
    open(TriggerEntryType::OnLoad, OutputEntryType::PitchWheel);
    stage->typeInto(output("Pitch"), "16384");
    expectInstalled([](RuleEntry& entry) { entry.output.pitch.value = 16383; });
}

TEST_F(RuleCard, TypedBytesReachTheEngine) {
    open(TriggerEntryType::OnLoad, OutputEntryType::SystemExclusive);
    stage->typeInto(output("Bytes (hex)"), "7e7f 09 01");
    expectInstalled([](RuleEntry& entry) { entry.output.systemExclusive = {0x7E, 0x7F, 0x09, 0x01}; });
    EXPECT_EQ(output("Bytes (hex)").shownText(), "7E 7F 09 01");
}

TEST_F(RuleCard, EscapeLeavesTheValueAndTheEngineAsTheyWere) {
    open(TriggerEntryType::OnLoad, OutputEntryType::NoteOn);
    click(output("Velocity"), output("Velocity").textArea().getCentre());
    type(stage->window, "1");
    EXPECT_TRUE(key(stage->window, juce::KeyPress::escapeKey));
    expectInstalled([](RuleEntry&) {});
    EXPECT_EQ(stage->editor().undoName(), std::nullopt);
}

TEST_F(RuleCard, ANewTriggerTypeClearsWhatItCannotFeed) {
    RuleEntry entry;
    entry.trigger.type = TriggerEntryType::NoteOn;
    entry.output.channel = triggerChannel;
    entry.output.note = triggerByte;
    entry.output.velocity = triggerByte;
    open(entry);
    stage->pick(trigger("Type"), "CC");
    expectInstalled([](RuleEntry& changed) {
        changed.trigger.type = TriggerEntryType::ControlChange;
        changed.output.note = byte(60);
        changed.output.velocity = byte(64);
    });
    EXPECT_EQ(texts(stage->card().output()), (Texts{"Note On", "From Trigger", "60 (C3)", "64", "0"}));
    stage->pick(trigger("Type"), "MIDI Transport Stop");
    expectInstalled([](RuleEntry& changed) {
        changed.trigger.type = TriggerEntryType::MIDIStop;
        changed.output.channel = channel(0);
    });
    EXPECT_EQ(captions(stage->card().trigger()), (Texts{"Type", "Incoming"}));
}

TEST_F(RuleCard, ANewOutputTypeKeepsTheOtherFieldsForALaterReturn) {
    open(TriggerEntryType::OnLoad, OutputEntryType::NoteOn);
    stage->typeInto(output("Velocity"), "11");
    stage->typeInto(output("Delay (ms)"), "500");
    stage->pick(output("Type"), "SysEx");
    expectInstalled([](RuleEntry& entry) {
        entry.output.velocity = byte(11);
        entry.output.delay.ms = 500;
        entry.output.type = OutputEntryType::SystemExclusive;
    });
    EXPECT_EQ(captions(stage->card().output()), (Texts{"Type", "Bytes (hex)", "Delay (ms)"}));
    stage->pick(output("Type"), "Note Off");
    expectInstalled([](RuleEntry& entry) { entry.output.type = OutputEntryType::NoteOff; });
    EXPECT_EQ(texts(stage->card().output()), (Texts{"Note Off", "1", "60 (C3)", "11", "500"}));
}

TEST_F(RuleCard, AShortcutOfTheTypeMenuIsItsControllerWithTheValueZero) {
    open(TriggerEntryType::OnLoad, OutputEntryType::ControlChange);
    stage->typeInto(output("Value"), "5");
    stage->pick(output("Type"), "All Notes Off");
    expectInstalled([](RuleEntry& entry) {
        entry.output.controller = byte(123);
        entry.output.controllerValue = byte(0);
    });
    stage->pick(output("Type"), "All Sound Off");
    expectInstalled([](RuleEntry& entry) { entry.output.controller = byte(120); });
    EXPECT_EQ(output("Type").shownText(), "CC");
}

TEST_F(RuleCard, SendIsThereExactlyForMessagesOfFixedBytes) {
    open(TriggerEntryType::NoteOn, OutputEntryType::NoteOn);
    EXPECT_TRUE(stage->card().buttons().sendButton().isEnabled());
    stage->pick(output("Velocity"), "From Trigger");
    EXPECT_FALSE(stage->card().buttons().sendButton().isEnabled());
    EXPECT_EQ(stage->card().buttons().sendButton().getTooltip(),
              "This message takes something from its trigger, so it cannot be sent by hand");
    stage->typeInto(output("Velocity"), "1");
    EXPECT_TRUE(stage->card().buttons().sendButton().isEnabled());
    EXPECT_EQ(stage->card().buttons().sendButton().getTooltip(), "");
}

/// Whether a message would be the same whatever triggers it, told from the entry alone.
bool takesNothing(const RuleOutputEntry& output) {
    const auto copied = [](const GenericByteV2& value) { return value == triggerByte; };
    const bool channelCopied =
        output.type != OutputEntryType::SystemExclusive && output.channel == triggerChannel;
    switch (output.type) {
    case OutputEntryType::NoteOn:
    case OutputEntryType::NoteOff: return !channelCopied && !copied(output.note) && !copied(output.velocity);
    case OutputEntryType::ControlChange:
        return !channelCopied && !copied(output.controller) && !copied(output.controllerValue);
    case OutputEntryType::ProgramChange: return !channelCopied && !copied(output.program);
    default: return !channelCopied;
    }
}

TEST_F(RuleCard, SendFollowsEveryCombinationOfFixedAndCopiedFields) {
    for (const auto type : everyOutputType()) {
        for (const auto& made : everyOutput(type)) {
            EXPECT_EQ(isFixed(made), takesNothing(made));
        }
    }
}

TEST_F(RuleCard, AChangeFromOutsideIsShown) {
    open(TriggerEntryType::NoteOn, OutputEntryType::NoteOn);
    auto changed = stage->entry(0);
    changed.name = "Elsewhere";
    changed.trigger.note = exactly(1);
    changed.output.velocity = triggerByte;
    stage->editor().edit({stage->id(0)}, changed);
    EXPECT_EQ(stage->card().header().shownText(), "Elsewhere");
    EXPECT_EQ(trigger("Note").shownText().substring(0, 2), "1 ");
    EXPECT_EQ(output("Velocity").shownText(), "From Trigger");
    EXPECT_FALSE(stage->card().buttons().sendButton().isEnabled());
}

TEST_F(RuleCard, AChangeOfTypesFromOutsideShowsOtherFieldsOnTheSameCard) {
    open(TriggerEntryType::OnLoad, OutputEntryType::NoteOn);
    const auto* card = &stage->card();
    auto changed = stage->entry(0);
    changed.trigger.type = TriggerEntryType::ProgramChange;
    changed.output.type = OutputEntryType::PitchWheel;
    stage->editor().edit({stage->id(0)}, changed);
    EXPECT_EQ(&stage->card(), card);
    EXPECT_EQ(captions(stage->card().trigger()), (Texts{"Type", "Ch", "Program", "Incoming"}));
    EXPECT_EQ(texts(stage->card().output()), (Texts{"Pitch Wheel", "1", "8192", "0"}));
    EXPECT_EQ(stage->card().getHeight(), RuleView::heightFor(changed, stage->view().list().rowWidth()));
}

TEST_F(RuleCard, UndoAndRedoAreShownAndReachTheEngine) {
    open(TriggerEntryType::OnLoad, OutputEntryType::NoteOn);
    stage->typeInto(output("Velocity"), "5");
    EXPECT_TRUE(stage->press('z', ctrl));
    EXPECT_EQ(output("Velocity").shownText(), "64");
    expectInstalled([](RuleEntry&) {});
    EXPECT_TRUE(stage->press('y', ctrl));
    EXPECT_EQ(output("Velocity").shownText(), "5");
    expectInstalled([](RuleEntry& entry) { entry.output.velocity = byte(5); });
}

TEST_F(RuleCard, StepsByKeysAndWheelAreUndoneTogether) {
    for (const auto* caption : {"Pitch", "Delay (ms)"}) {
        open(TriggerEntryType::OnLoad, OutputEntryType::PitchWheel);
        stage->editor().setNow([] { return RuleListEditor::Clock::time_point{}; });
        const auto before = output(caption).shownText().getIntValue();
        click(output(caption), output(caption).textArea().getCentre());
        EXPECT_TRUE(key(stage->window, juce::KeyPress::upKey));
        EXPECT_TRUE(key(stage->window, juce::KeyPress::pageUpKey));
        wheel(output(caption), 1);
        EXPECT_EQ(output(caption).shownText().getIntValue(), before + 12);
        stage->editor().undo();
        expectInstalled([](RuleEntry&) {});
    }
}

TEST_F(RuleCard, StepsOfFieldsWithOneNameAreUndoneOneAfterTheOther) {
    open(TriggerEntryType::ControlChange, OutputEntryType::ControlChange);
    stage->editor().setNow([] { return RuleListEditor::Clock::time_point{}; });
    stage->typeInto(trigger("Value"), "20");
    for (auto* value : {&trigger("Value"), &output("Value")}) {
        click(*value, value->textArea().getCentre());
        EXPECT_TRUE(key(stage->window, juce::KeyPress::upKey));
    }
    stage->editor().undo();
    expectInstalled([](RuleEntry& entry) { entry.trigger.controllerValue = exactly(21); });
}

TEST_F(RuleCard, NumbersThatAreTypedOneAfterTheOtherAreUndoneOneAfterTheOther) {
    open(TriggerEntryType::OnLoad, OutputEntryType::NoteOn);
    stage->editor().setNow([] { return RuleListEditor::Clock::time_point{}; });
    for (const auto* typed : {"10", "20", "30"}) {
        stage->typeInto(output("Delay (ms)"), typed);
    }
    for (const auto* shown : {"20", "10", "0"}) {
        stage->editor().undo();
        EXPECT_EQ(output("Delay (ms)").shownText(), shown);
    }
}

TEST_F(RuleCard, AFieldThatIsNotTypedIntoLeavesTheWheelToTheList) {
    open(TriggerEntryType::OnLoad, OutputEntryType::PitchWheel);
    wheel(output("Pitch"), 1);
    stage->typeInto(output("Pitch"), "100");
    wheel(output("Pitch"), 1);
    expectInstalled([](RuleEntry& entry) { entry.output.pitch.value = 100; });
}

TEST_F(RuleCard, SteppingATriggersValueEndsAt127AndMoreCanBeTyped) {
    open(TriggerEntryType::ControlChange, OutputEntryType::NoteOn);
    stage->typeInto(trigger("Value"), "120");
    trigger("Value").grabKeyboardFocus();
    stage->press(juce::KeyPress::pageUpKey);
    expectInstalled([](RuleEntry& entry) { entry.trigger.controllerValue = exactly(127); });
    EXPECT_TRUE(stage->press(juce::KeyPress::upKey));
    expectInstalled([](RuleEntry&) {});
    stage->typeInto(trigger("Value"), "200");
    expectInstalled([](RuleEntry& entry) { entry.trigger.controllerValue = exactly(200); });
}

TEST_F(RuleCard, TheSpaceBarLeavesWhatWasClickedAlone) {
    open(TriggerEntryType::OnLoad, OutputEntryType::NoteOn);
    stage->typeInto(output("Delay (ms)"), "250");
    stage->beginTyping(output("Delay (ms)"), " ");
    click(stage->view().header());
    expectInstalled([](RuleEntry& entry) { entry.output.delay.ms = 250; });
    EXPECT_EQ(stage->window.unusedKeys().size(), 1U) << "It is the host's.";
}

TEST_F(RuleCard, TheNameOpensByADoubleClickOnItsText) {
    open(TriggerEntryType::OnLoad, OutputEntryType::NoteOn);
    stage->typeInto(stage->card().header(), "Intro");
    auto& name = stage->card().header();
    const auto onText = name.textArea().getTopLeft() + juce::Point(4, 8);
    click(name, onText);
    EXPECT_FALSE(name.isEditable());
    click(name, name.textArea().getCentre(), 2);
    EXPECT_FALSE(name.isEditable()) << "Beside the text";
    click(name, onText, 2);
    EXPECT_TRUE(name.isEditable());
}

TEST_F(RuleCard, AnEmptyNameOpensByADoubleClickOnItsCaption) {
    open(TriggerEntryType::OnLoad, OutputEntryType::NoteOn);
    auto& name = stage->card().header();
    ASSERT_EQ(name.shownText(), "");
    stage->typeInto(name, "Intro");
    expectInstalled([](RuleEntry& entry) { entry.name = "Intro"; });
}

}  // namespace
}  // namespace quillo
