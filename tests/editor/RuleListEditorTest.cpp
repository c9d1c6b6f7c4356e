// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleListEditor.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "platform/FatalError.hpp"
#include "support/EditorDesk.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Names = std::vector<std::string>;

RuleList named(const Names& names) {
    RuleList list;
    for (const auto& name : names) {
        RuleEntryIdentifiable element;
        element.rule.name = name;
        list.push_back(element);
    }
    return list;
}

TEST(NextIndex, IsOneMoreThanTheGreatestNumberInAName) {
    EXPECT_EQ(nextIndex({}), 1);
    EXPECT_EQ(nextIndex(named({"Message #1", "Message #7", "Intro"})), 8);
    EXPECT_EQ(nextIndex(named({"Message #", "message #9", "Message #9 ", "Message #x", "xMessage #9"})), 1);
    EXPECT_EQ(nextIndex(named({"Message #-5"})), 1);
    EXPECT_EQ(nextIndex(named({"Message #+5"})), 6);
    EXPECT_EQ(nextIndex(named({"Message #007"})), 8);
    EXPECT_EQ(nextIndex(named({"Message #9223372036854775808"})), 1);
}

TEST(NextIndex, WithoutANumberLeftIsFatal) {
    EXPECT_THROW(static_cast<void>(nextIndex(named({"Message #9223372036854775807"}))), FatalError);
}

class RuleListEditorTest : public testing::Test {
protected:
    /// Every change reached the engine as the whole list.
    void expectInstalled() { EXPECT_EQ(desk.installed, rulesOf(editor.rules())); }

    EditorDesk desk;
    RuleListEditor& editor = desk.editor;
};

TEST_F(RuleListEditorTest, ANewRuleStandsAtTheEndUnderTheNextNumber) {
    desk.addNoteOn();
    editor.add(MIDIRuleType::ControlChangeShortCut{123});
    EXPECT_EQ(desk.names(), (Names{"Message #1", "Message #2"}));
    EXPECT_EQ(desk.installed, (std::vector{rule(onLoad(), send(noteOn(0, 60, 64)), "Message #1"),
                                           rule(onLoad(), send(controlChange(0, 123, 0)), "Message #2")}));
    EXPECT_EQ(editor.undoName(), "Add Message #2");
}

TEST_F(RuleListEditorTest, ADuplicateStandsRightAfterItsOriginalUnderTheSameNameAndANewIdentity) {
    desk.addNoteOns(2);
    editor.duplicate(desk.idOf(0));
    EXPECT_EQ(desk.names(), (Names{"Message #1", "Message #1", "Message #2"}));
    EXPECT_EQ(editor.rules()[0].rule, editor.rules()[1].rule);
    EXPECT_NE(editor.rules()[0].id, editor.rules()[1].id);
    EXPECT_EQ(editor.undoName(), "Duplicate Message #1");
    expectInstalled();
}

TEST_F(RuleListEditorTest, ADeletedRuleIsGone) {
    desk.addNoteOns(3);
    editor.remove(desk.idOf(1));
    EXPECT_EQ(desk.names(), (Names{"Message #1", "Message #3"}));
    EXPECT_EQ(editor.undoName(), "Delete Message #2");
    expectInstalled();
}

TEST_F(RuleListEditorTest, AMoveKeepsEveryRuleExactlyOnceAndTheOthersInOrder) {
    for (std::size_t from = 0; from < 4; ++from) {
        for (std::size_t to = 0; to < 6; ++to) {
            EditorDesk fresh;
            fresh.addNoteOns(4);
            auto expected = fresh.editor.rules();
            const auto moved = expected[from];
            expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(from));
            expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(to, 3)),
                            moved);
            fresh.editor.move(moved.id, to);
            EXPECT_EQ(fresh.editor.rules(), expected) << from << " to " << to;
            EXPECT_EQ(fresh.installed, rulesOf(expected));
        }
    }
}

TEST_F(RuleListEditorTest, AMoveToItsOwnPlaceIsNoStep) {
    desk.addNoteOns(2);
    editor.move(desk.idOf(1), 1);
    EXPECT_EQ(editor.undoName(), "Add Message #2");
}

TEST_F(RuleListEditorTest, AnEditReachesTheEngineAtOnce) {
    desk.addNoteOn();
    auto entry = editor.rules()[0].rule;
    entry.output.velocity = byte(99);
    entry.name = "Loud";
    const auto id = desk.idOf(0);
    editor.edit(id, entry);
    EXPECT_EQ(desk.installed, (std::vector{rule(onLoad(), send(noteOn(0, 60, 99)), "Loud")}));
    EXPECT_EQ(desk.idOf(0), id);
    EXPECT_EQ(editor.undoName(), "Edit Message #1");
}

TEST_F(RuleListEditorTest, EditsOfOneFieldInARowAreOneStep) {
    desk.addNoteOn();
    for (std::int64_t delay = 1; delay <= 3; ++delay) {
        auto entry = editor.rules()[0].rule;
        entry.output.delay.ms = delay;
        editor.edit(desk.idOf(0), entry, "delay");
    }
    editor.undo();
    EXPECT_EQ(editor.rules()[0].rule.output.delay.ms, 0);
    EXPECT_EQ(editor.undoName(), "Add Message #1");
}

TEST_F(RuleListEditorTest, ANewTriggerClearsWhatItCannotFeed) {
    desk.addNoteOn();
    editor.changeTriggerType(desk.idOf(0), TriggerEntryType::NoteOn);
    auto entry = editor.rules()[0].rule;
    entry.output.note = triggerByte;
    entry.output.channel = triggerChannel;
    editor.edit(desk.idOf(0), entry);
    editor.changeTriggerType(desk.idOf(0), TriggerEntryType::HostStart);
    EXPECT_EQ(editor.rules()[0].rule.output.note, byte(60));
    EXPECT_EQ(editor.rules()[0].rule.output.channel, channel(0));
    EXPECT_EQ(editor.rules()[0].rule.trigger.type, TriggerEntryType::HostStart);
    expectInstalled();
}

TEST_F(RuleListEditorTest, ANewOutputTypeKeepsTheFieldsOfTheOthers) {
    desk.addNoteOn();
    auto entry = editor.rules()[0].rule;
    entry.output.note = byte(72);
    editor.edit(desk.idOf(0), entry);
    editor.changeOutputType(desk.idOf(0), OutputEntryType::PitchWheel);
    editor.changeOutputType(desk.idOf(0), OutputEntryType::NoteOff);
    EXPECT_EQ(editor.rules()[0].rule.output.note, byte(72));
    expectInstalled();
}

TEST_F(RuleListEditorTest,
       AChoiceThatWaitedUnderAnotherOutputTypeIsClearedWhenTheTriggerHasChangedMeanwhile) {
    desk.addNoteOn();
    const auto id = desk.idOf(0);
    editor.changeTriggerType(id, TriggerEntryType::NoteOn);
    auto entry = editor.rules()[0].rule;
    entry.output.note = triggerByte;
    editor.edit(id, entry);
    editor.changeOutputType(id, OutputEntryType::SystemExclusive);
    editor.changeTriggerType(id, TriggerEntryType::OnLoad);
    editor.changeOutputType(id, OutputEntryType::NoteOn);
    EXPECT_EQ(editor.rules()[0].rule.output.note, byte(60));
    EXPECT_EQ(editor.alertErrorMessage(), std::nullopt);
    expectInstalled();
}

TEST_F(RuleListEditorTest, EveryChangeCanBeUndoneAndRedoneAndReachesTheEngineEachTime) {
    desk.addNoteOns(2);
    std::vector<RuleList> states{editor.rules()};
    const auto change = [&](const auto& act) {
        act();
        states.push_back(editor.rules());
    };
    change([&] { editor.duplicate(desk.idOf(0)); });
    change([&] { editor.move(desk.idOf(0), 2); });
    change([&] { editor.remove(desk.idOf(1)); });
    change([&] { editor.changeOutputType(desk.idOf(0), OutputEntryType::PitchWheel); });
    change([&] { editor.replaceAll(named({"x", "y"}), "Import z.json"); });
    for (auto state = states.size() - 1; state > 0; --state) {
        editor.undo();
        EXPECT_EQ(editor.rules(), states[state - 1]);
        expectInstalled();
    }
    for (std::size_t state = 1; state < states.size(); ++state) {
        editor.redo();
        EXPECT_EQ(editor.rules(), states[state]);
        expectInstalled();
    }
    EXPECT_EQ(editor.undoName(), "Import z.json");
}

TEST_F(RuleListEditorTest, ThoseWhoObserveTheRulesAlreadySeeWhatCanBeUndone) {
    std::vector<std::optional<std::string>> seen;
    const auto observation = desk.model->observeRules([&] { seen.push_back(editor.undoName()); });
    desk.addNoteOn();
    editor.remove(desk.idOf(0));
    editor.undo();
    editor.redo();
    EXPECT_EQ(seen, (std::vector<std::optional<std::string>>{"Add Message #1", "Delete Message #1",
                                                             "Add Message #1", "Delete Message #1"}));
}

TEST_F(RuleListEditorTest, AListThatTheUnitBringsInForgetsWhatCouldBeUndone) {
    desk.addNoteOns(2);
    editor.undo();
    desk.model->setRules(named({"restored"}));
    EXPECT_EQ(editor.undoName(), std::nullopt);
    EXPECT_EQ(editor.redoName(), std::nullopt);
}

TEST_F(RuleListEditorTest, AnUnknownIdentityChangesNothing) {
    desk.addNoteOn();
    const auto before = editor.rules();
    const auto installs = desk.installs;
    const UUID unknown;
    editor.duplicate(unknown);
    editor.remove(unknown);
    editor.move(unknown, 0);
    editor.edit(unknown, RuleEntry{});
    editor.changeTriggerType(unknown, TriggerEntryType::NoteOn);
    editor.changeOutputType(unknown, OutputEntryType::NoteOff);
    editor.send(unknown);
    EXPECT_EQ(editor.rules(), before);
    EXPECT_EQ(desk.installs, installs);
    EXPECT_TRUE(desk.sent.empty());
}

TEST_F(RuleListEditorTest, SendHandsOverTheMessageOfAFixedOutput) {
    desk.addNoteOn();
    editor.send(desk.idOf(0));
    EXPECT_EQ(desk.sent, std::vector{noteOn(0, 60, 64)});
}

TEST_F(RuleListEditorTest, AnOutputThatNeedsItsTriggerIsNotSent) {
    desk.addNoteOn();
    editor.changeTriggerType(desk.idOf(0), TriggerEntryType::NoteOn);
    auto entry = editor.rules()[0].rule;
    entry.output.channel = triggerChannel;
    editor.edit(desk.idOf(0), entry);
    editor.send(desk.idOf(0));
    EXPECT_TRUE(desk.sent.empty());
}

TEST_F(RuleListEditorTest, AListThatTheEngineRefusesIsNotKeptAndTheAlertSaysWhy) {
    desk.addNoteOn();
    const auto before = editor.rules();
    auto entry = before[0].rule;
    entry.output.delay.ms = std::numeric_limits<std::int64_t>::max();
    int alerts = 0;
    const auto observation = desk.model->observeAlert([&alerts] { ++alerts; });
    editor.edit(desk.idOf(0), entry);
    EXPECT_EQ(editor.rules(), before);
    EXPECT_EQ(editor.undoName(), "Add Message #1");
    ASSERT_TRUE(editor.alertErrorMessage().has_value());
    EXPECT_NE(editor.alertErrorMessage()->find("a delay is too long"), std::string::npos);
    editor.dismissAlert();
    EXPECT_EQ(editor.alertErrorMessage(), std::nullopt);
    EXPECT_EQ(alerts, 2);
}

TEST_F(RuleListEditorTest, WithoutANumberLeftForItsNameARuleIsNotAdded) {
    desk.model->setRules(named({"Message #9223372036854775807"}));
    desk.addNoteOn();
    EXPECT_EQ(editor.rules().size(), 1U);
    EXPECT_TRUE(editor.alertErrorMessage().has_value());
}

TEST_F(RuleListEditorTest, WhileTheUnitRunsRulesThatCannotBeShownNothingIsAdded) {
    desk.model->setNotEditable("The rule \"x\" cannot be edited.");
    desk.addNoteOn();
    EXPECT_EQ(desk.installs, 0U);
    EXPECT_EQ(editor.alertErrorMessage(), "The rule \"x\" cannot be edited.");
    editor.replaceAll(named({"a"}), "Import");
    EXPECT_EQ(desk.installs, 1U);
    EXPECT_EQ(editor.whyNotEditable(), std::nullopt);
}

TEST_F(RuleListEditorTest, WithNothingToUndoOrRedoNothingReachesTheEngine) {
    desk.model->setNotEditable("not shown");
    editor.undo();
    editor.redo();
    EXPECT_EQ(desk.installs, 0U);
    EXPECT_EQ(editor.whyNotEditable(), "not shown");
}

TEST_F(RuleListEditorTest, WhoeverSeesANewListCanUndoIt) {
    std::vector<std::optional<std::string>> seen;
    const auto observation = desk.model->observeRules([&] { seen.push_back(editor.undoName()); });
    desk.addNoteOn();
    editor.undo();
    EXPECT_EQ(seen, (std::vector<std::optional<std::string>>{"Add Message #1", std::nullopt}));
}

}  // namespace
}  // namespace quillo
