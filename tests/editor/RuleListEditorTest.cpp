// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleListEditor.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
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

TEST_F(RuleListEditorTest, ALearnedTriggerFillsEveryFieldButIncomingAndIsOneStep) {
    desk.addNoteOn();
    auto entry = editor.rules()[0].rule;
    entry.trigger = {.type = TriggerEntryType::ProgramChange,
                     .program = exactly(3),
                     .passThrough = PassThroughV2::EatMatching};
    entry.name = "Pedal";
    editor.edit({desk.idOf(0)}, entry);
    const auto before = editor.rules();
    RuleTriggerEntry pedal{.type = TriggerEntryType::ControlChange,
                           .channel = exactly(0),
                           .controller = 64,
                           .controllerValue = exactly(127)};
    editor.learn({desk.idOf(0)}, {pedal});
    pedal.passThrough = PassThroughV2::EatMatching;
    EXPECT_EQ(editor.rules()[0].rule.trigger, pedal);
    EXPECT_EQ(editor.undoName(), "Learn Pedal");
    expectInstalled();
    editor.undo();
    EXPECT_EQ(editor.rules(), before);
}

TEST_F(RuleListEditorTest, WhatALearnedTriggerCannotFeedFallsBack) {
    desk.addNoteOn();
    auto entry = editor.rules()[0].rule;
    entry.trigger.type = TriggerEntryType::NoteOn;
    entry.output.note = triggerByte;
    editor.edit({desk.idOf(0)}, entry);
    editor.learn({desk.idOf(0)}, {{.type = TriggerEntryType::HostStart}});
    EXPECT_EQ(editor.rules()[0].rule.output.note, byte(60));
    expectInstalled();
}

const std::vector<RuleTriggerEntry> noteAndItsEnd{
    {.type = TriggerEntryType::NoteOn, .channel = exactly(1), .note = exactly(48)},
    {.type = TriggerEntryType::NoteOff, .channel = exactly(1), .note = exactly(48)}};

TEST_F(RuleListEditorTest, ALearnedPairMakesBothRulesInOneStep) {
    desk.addNoteOns(2);
    const auto before = editor.rules();
    editor.learn({desk.idOf(0)}, noteAndItsEnd);
    EXPECT_EQ(desk.names(), (Names{"Message #1", "Message #1", "Message #2"}));
    EXPECT_EQ(editor.rules()[0].rule.trigger, noteAndItsEnd[0]);
    EXPECT_EQ(editor.rules()[0].rule.output.type, OutputEntryType::NoteOn);
    EXPECT_EQ(editor.rules()[1].rule.trigger, noteAndItsEnd[1]);
    EXPECT_EQ(editor.rules()[1].rule.output.type, OutputEntryType::NoteOff);
    EXPECT_EQ(editor.rules()[0].id, before[0].id);
    expectInstalled();
    editor.undo();
    EXPECT_EQ(editor.rules(), before);
}

TEST_F(RuleListEditorTest, ALearnedPairSendsNoteOffOnlyForNoteOn) {
    editor.add(MIDIRuleType::OutputType{OutputEntryType::SystemExclusive});
    editor.learn({desk.idOf(0)}, noteAndItsEnd);
    EXPECT_EQ(editor.rules()[1].rule.output, editor.rules()[0].rule.output);
}

TEST_F(RuleListEditorTest, NewRulesForAPairAreOneStep) {
    editor.addWaitingFor(noteAndItsEnd);
    EXPECT_EQ(
        desk.installed,
        (std::vector{rule(onNoteOn(exactly(48), exactly(1)), send(noteOn(0, 60, 64)), "Message #1"),
                     rule(onNoteOff(exactly(48), exactly(1)),
                          send(protocol(StatusV2::noteOff, channel(0), byte(60), byte(64))), "Message #2")}));
    editor.undo();
    EXPECT_TRUE(editor.rules().empty());
}

TEST_F(RuleListEditorTest, NotesAsPlayedComeOutAsTheyCameIn) {
    editor.addNotesAsPlayed();
    EXPECT_EQ(desk.installed,
              (std::vector{rule(onNoteOn(any, any, PassThroughV2::EatMatching),
                                send(protocol(StatusV2::noteOn, triggerChannel, triggerByte, triggerByte)),
                                "Message #1")}));
    EXPECT_EQ(editor.undoName(), "Add Message #1");
}

TEST_F(RuleListEditorTest, ANewRuleSendsWhatItIsToldTo) {
    RuleOutputEntry output;
    output.type = OutputEntryType::ControlChange;
    output.channel = channel(2);
    output.controller = byte(7);
    output.controllerValue = byte(9);
    editor.addSending(output);
    EXPECT_EQ(desk.installed, (std::vector{rule(onLoad(), send(controlChange(2, 7, 9)), "Message #1")}));
    EXPECT_EQ(editor.undoName(), "Add Message #1");
}

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
    editor.duplicate({desk.idOf(0)});
    EXPECT_EQ(desk.names(), (Names{"Message #1", "Message #1", "Message #2"}));
    EXPECT_EQ(editor.rules()[0].rule, editor.rules()[1].rule);
    EXPECT_NE(editor.rules()[0].id, editor.rules()[1].id);
    EXPECT_EQ(editor.undoName(), "Duplicate Message #1");
    expectInstalled();
}

TEST_F(RuleListEditorTest, CopiesOfSeveralStandBehindTheLastOfThemInTheListsOrder) {
    desk.addNoteOns(4);
    const auto before = editor.rules();
    editor.duplicate({desk.idOf(2), desk.idOf(0), UUID()});
    EXPECT_EQ(desk.names(),
              (Names{"Message #1", "Message #2", "Message #3", "Message #1", "Message #3", "Message #4"}));
    EXPECT_NE(desk.idOf(3), desk.idOf(0));
    EXPECT_NE(desk.idOf(4), desk.idOf(2));
    EXPECT_EQ(editor.undoName(), "Duplicate Message #1 (2 rules)");
    expectInstalled();
    editor.undo();
    EXPECT_EQ(editor.rules(), before);
}

TEST_F(RuleListEditorTest, SeveralAreDeletedInOneStep) {
    desk.addNoteOns(5);
    const auto before = editor.rules();
    editor.remove({desk.idOf(4), desk.idOf(1), desk.idOf(2)});
    EXPECT_EQ(desk.names(), (Names{"Message #1", "Message #4"}));
    EXPECT_EQ(editor.undoName(), "Delete Message #2 (3 rules)");
    expectInstalled();
    editor.undo();
    EXPECT_EQ(editor.rules(), before);
}

/// Which of four rules are moved, as bits.
class SeveralMoved : public testing::TestWithParam<unsigned> {
protected:
    SeveralMoved() {
        desk.addNoteOns(4);
        for (std::size_t rule = 0; rule < 4; ++rule) {
            (GetParam() >> rule & 1 ? moved : others).push_back(desk.editor.rules()[rule]);
        }
    }

    [[nodiscard]] RuleIds ids() const {
        RuleIds ids;
        for (const auto& element : moved) {
            ids.insert(ids.begin(), element.id);
        }
        return ids;
    }

    EditorDesk desk;
    RuleList moved;
    RuleList others;
};

TEST_P(SeveralMoved, StandTogetherInTheListsOrder) {
    for (std::size_t to = 0; to < 6; ++to) {
        auto expected = others;
        const auto place = static_cast<std::ptrdiff_t>(std::min(to, others.size()));
        expected.insert(expected.begin() + place, moved.begin(), moved.end());
        const auto before = desk.editor.rules();
        desk.editor.move(ids(), to);
        EXPECT_EQ(desk.editor.rules(), expected) << "to " << to;
        EXPECT_EQ(desk.installed, rulesOf(expected));
        if (before != expected) {
            desk.editor.undo();
            EXPECT_EQ(desk.editor.rules(), before);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(OfFour, SeveralMoved, testing::Range(1U, 16U));

TEST_F(RuleListEditorTest, ADeletedRuleIsGone) {
    desk.addNoteOns(3);
    editor.remove({desk.idOf(1)});
    EXPECT_EQ(desk.names(), (Names{"Message #1", "Message #3"}));
    EXPECT_EQ(editor.undoName(), "Delete Message #2");
    expectInstalled();
}

TEST_F(RuleListEditorTest, AMoveToItsOwnPlaceIsNoStep) {
    desk.addNoteOns(2);
    editor.move({desk.idOf(1)}, 1);
    EXPECT_EQ(editor.undoName(), "Add Message #2");
}

TEST_F(RuleListEditorTest, AnEditReachesTheEngineAtOnce) {
    desk.addNoteOn();
    auto entry = editor.rules()[0].rule;
    entry.output.velocity = byte(99);
    entry.name = "Loud";
    const auto id = desk.idOf(0);
    editor.edit({id}, entry);
    EXPECT_EQ(desk.installed, (std::vector{rule(onLoad(), send(noteOn(0, 60, 99)), "Loud")}));
    EXPECT_EQ(desk.idOf(0), id);
    EXPECT_EQ(editor.undoName(), "Edit Message #1");
}

/// Changes the delay of the first rule and says what it is after one undo.
class DelayEdits : public RuleListEditorTest {
protected:
    using Milliseconds = std::chrono::milliseconds;

    DelayEdits() {
        editor.setNow([this] { return now; });
        desk.addNoteOn();
    }

    [[nodiscard]] RuleEntry withDelay(std::int64_t ms) const {
        auto entry = desk.editor.rules()[0].rule;
        entry.output.delay.ms = ms;
        return entry;
    }
    void edit(std::int64_t ms) { editor.edit({desk.idOf(0)}, withDelay(ms)); }
    void step(std::int64_t ms) { editor.step({desk.idOf(0)}, withDelay(ms), delayPlace); }

    std::int64_t delayAfterUndo() {
        editor.undo();
        return editor.rules()[0].rule.output.delay.ms;
    }

    static constexpr FieldPlace delayPlace = 8;
    RuleListEditor::Clock::time_point now{};
};

TEST_F(DelayEdits, EachConfirmationIsAStepOfItsOwn) {
    edit(10);
    edit(20);
    edit(30);
    EXPECT_EQ(delayAfterUndo(), 20);
    EXPECT_EQ(delayAfterUndo(), 10);
    EXPECT_EQ(delayAfterUndo(), 0);
    EXPECT_EQ(editor.undoName(), "Add Message #1");
}

TEST_F(DelayEdits, StepsThatFollowEachOtherWithinASecondAreUndoneTogether) {
    for (std::int64_t ms = 1; ms <= 5; ++ms) {
        step(ms);
        now += Milliseconds(1000);
    }
    EXPECT_EQ(delayAfterUndo(), 0);
    EXPECT_EQ(editor.undoName(), "Add Message #1");
}

TEST_F(DelayEdits, AStepThatComesLaterIsUndoneByItself) {
    step(1);
    now += Milliseconds(1001);
    step(2);
    EXPECT_EQ(delayAfterUndo(), 1);
}

TEST_F(DelayEdits, AStepDoesNotJoinTheConfirmationBeforeIt) {
    edit(10);
    step(11);
    edit(20);
    EXPECT_EQ(delayAfterUndo(), 11);
    EXPECT_EQ(delayAfterUndo(), 10);
}

TEST_F(DelayEdits, StepsOfOtherFieldsAreUndoneByThemselves) {
    step(1);
    auto entry = editor.rules()[0].rule;
    entry.output.velocity = byte(1);
    editor.step({desk.idOf(0)}, entry, delayPlace + 1);
    EXPECT_EQ(delayAfterUndo(), 1);
    EXPECT_EQ(editor.rules()[0].rule.output.velocity, byte(64));
}

TEST(ChangedRule, IsTheOneThatWasEditedAddedOrMovedAndElseTheNeighbourOfTheOneThatWent) {
    const auto list = named({"a", "b", "c", "d"});
    const auto only = [&list](std::initializer_list<std::size_t> positions) {
        RuleList part;
        for (const auto position : positions) {
            part.push_back(list[position]);
        }
        return part;
    };
    auto edited = list;
    edited[2].rule.name = "x";
    EXPECT_EQ(changedRule(list, edited), list[2].id);
    EXPECT_EQ(changedRule(only({0, 2, 3}), list), list[1].id);
    EXPECT_EQ(changedRule(list, only({0, 2, 3})), list[2].id);
    EXPECT_EQ(changedRule(list, only({0, 1, 2})), list[2].id);
    EXPECT_EQ(changedRule(list, only({1, 2, 0, 3})), list[0].id);
    EXPECT_EQ(changedRule(list, only({0, 3, 1, 2})), list[3].id);
    EXPECT_EQ(changedRule(list, only({3, 0, 1, 2})), list[3].id);
    EXPECT_EQ(changedRule(list, only({2, 3, 0, 1})), list[2].id);
    EXPECT_EQ(changedRule(list, only({3, 0, 1})), list[3].id);
    EXPECT_EQ(changedRule(only({0, 3}), list), list[1].id);
    EXPECT_EQ(changedRule(list, only({0, 3})), list[3].id);
    EXPECT_EQ(changedRule({}, list), list[0].id);
    EXPECT_EQ(changedRule(list, {}), std::nullopt);
}

TEST(ChangedRule, IsTheFirstOfSeveralThatWereMoved) {
    const auto list = named({"a", "b", "c", "d", "e"});
    EXPECT_EQ(changedRule(list, {list[2], list[3], list[4], list[0], list[1]}), list[0].id);
    EXPECT_EQ(changedRule(list, {list[3], list[4], list[0], list[1], list[2]}), list[3].id);
}

TEST_F(RuleListEditorTest, UndoAndRedoTellWhichRuleTheyChanged) {
    std::vector<UUID> told;
    editor.setOnWalk([&told](const UUID& id) { told.push_back(id); });
    desk.addNoteOns(3);
    const auto middle = desk.idOf(1);
    const auto last = desk.idOf(2);
    editor.remove({middle});
    EXPECT_TRUE(told.empty());
    editor.undo();
    editor.redo();
    EXPECT_EQ(told, (std::vector{middle, last}));
}

TEST_F(RuleListEditorTest, ANewTriggerClearsWhatItCannotFeed) {
    desk.addNoteOn();
    editor.changeTriggerType({desk.idOf(0)}, TriggerEntryType::NoteOn);
    auto entry = editor.rules()[0].rule;
    entry.output.note = triggerByte;
    entry.output.channel = triggerChannel;
    editor.edit({desk.idOf(0)}, entry);
    editor.changeTriggerType({desk.idOf(0)}, TriggerEntryType::HostStart);
    EXPECT_EQ(editor.rules()[0].rule.output.note, byte(60));
    EXPECT_EQ(editor.rules()[0].rule.output.channel, channel(0));
    EXPECT_EQ(editor.rules()[0].rule.trigger.type, TriggerEntryType::HostStart);
    expectInstalled();
}

TEST_F(RuleListEditorTest, ANewOutputTypeKeepsTheFieldsOfTheOthers) {
    desk.addNoteOn();
    auto entry = editor.rules()[0].rule;
    entry.output.note = byte(72);
    editor.edit({desk.idOf(0)}, entry);
    editor.changeOutputType({desk.idOf(0)}, OutputEntryType::PitchWheel);
    editor.changeOutputType({desk.idOf(0)}, OutputEntryType::NoteOff);
    EXPECT_EQ(editor.rules()[0].rule.output.note, byte(72));
    expectInstalled();
}

TEST_F(RuleListEditorTest,
       AChoiceThatWaitedUnderAnotherOutputTypeIsClearedWhenTheTriggerHasChangedMeanwhile) {
    desk.addNoteOn();
    const auto id = desk.idOf(0);
    editor.changeTriggerType({id}, TriggerEntryType::NoteOn);
    auto entry = editor.rules()[0].rule;
    entry.output.note = triggerByte;
    editor.edit({id}, entry);
    editor.changeOutputType({id}, OutputEntryType::SystemExclusive);
    editor.changeTriggerType({id}, TriggerEntryType::OnLoad);
    editor.changeOutputType({id}, OutputEntryType::NoteOn);
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
    change([&] { editor.duplicate({desk.idOf(0)}); });
    change([&] { editor.move({desk.idOf(0)}, 2); });
    change([&] { editor.remove({desk.idOf(1)}); });
    change([&] { editor.changeOutputType({desk.idOf(0)}, OutputEntryType::PitchWheel); });
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
    editor.remove({desk.idOf(0)});
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
    editor.duplicate({unknown});
    editor.remove({unknown});
    editor.move({unknown}, 0);
    editor.edit({unknown}, RuleEntry{});
    editor.changeTriggerType({unknown}, TriggerEntryType::NoteOn);
    editor.changeOutputType({unknown}, OutputEntryType::NoteOff);
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
    editor.changeTriggerType({desk.idOf(0)}, TriggerEntryType::NoteOn);
    auto entry = editor.rules()[0].rule;
    entry.output.channel = triggerChannel;
    editor.edit({desk.idOf(0)}, entry);
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
    editor.edit({desk.idOf(0)}, entry);
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

/// Rules from outside that no card can show: a pressure is copied from the trigger.
std::vector<Rule> rulesNotShown() {
    return {rule(onLoad(), send(noteOn(0, 60, 64)), "a"),
            rule(onNoteOn(), send(protocol(StatusV2::channelPressure, channel(0), triggerByte)), "odd")};
}

class RulesNotShown : public RuleListEditorTest {
protected:
    RulesNotShown() {
        desk.model->setNotEditable("Rule 1 \"odd\" cannot be edited.", PluginData{rulesNotShown()});
    }

    void expectBack() {
        EXPECT_EQ(desk.installed, rulesNotShown());
        EXPECT_EQ(editor.whyNotEditable(), "Rule 1 \"odd\" cannot be edited.");
        EXPECT_EQ(editor.storedRules(), PluginData{rulesNotShown()});
        EXPECT_EQ(editor.undoName(), std::nullopt);
    }
};

TEST_F(RulesNotShown, ComeBackWithTheirNoticeWhenTheImportThatReplacedThemIsUndone) {
    for (const auto& imported : {named({"x", "y"}), RuleList{}}) {
        editor.replaceAll(imported, "Import");
        EXPECT_EQ(editor.whyNotEditable(), std::nullopt);
        editor.undo();
        expectBack();
    }
}

TEST_F(RulesNotShown, ComeBackWhenEverythingIsUndoneAndGoAgainWhenItIsRedone) {
    editor.replaceAll(named({"x"}), "Import");
    desk.addNoteOn();
    const auto after = editor.rules();
    editor.undo();
    EXPECT_EQ(desk.names(), Names{"x"});
    editor.undo();
    expectBack();
    editor.redo();
    editor.redo();
    EXPECT_EQ(editor.rules(), after);
    EXPECT_EQ(editor.whyNotEditable(), std::nullopt);
    expectInstalled();
}

TEST_F(RulesNotShown, DoNotComeBackIntoAListThatTheUnitBroughtInLater) {
    editor.replaceAll(named({"x"}), "Import");
    desk.model->setRules(named({"restored"}));
    desk.addNoteOn();
    editor.undo();
    EXPECT_EQ(desk.names(), Names{"restored"});
    EXPECT_EQ(desk.installed, rulesOf(named({"restored"})));
}

TEST_F(RulesNotShown, DoNotComeBackOnceTheirStepIsForgotten) {
    editor.replaceAll(named({"x"}), "Import");
    for (std::size_t step = 0; step < RuleListHistory::defaultCapacity; ++step) {
        editor.duplicate({desk.idOf(0)});
    }
    while (editor.undoName()) {
        editor.undo();
    }
    EXPECT_EQ(desk.names(), Names{"x"});
    EXPECT_EQ(editor.whyNotEditable(), std::nullopt);
}

/// A rule of a first-generation document.
Rule oldProgramChange(const std::string& name) {
    return rule(onLoad(), send(protocol(StatusV2::programChange, channel(3), byte(9))), name);
}

class LoadedMessage : public RuleListEditorTest {
protected:
    LoadedMessage() {
        desk.model->setRules({elementFromRule(oldProgramChange("old")),
                              elementFromRule(rule(onLoad(), send(noteOn(0, 60, 64)), "other"))});
    }

    void setProgram(std::uint8_t program) {
        auto entry = editor.rules()[0].rule;
        entry.output.program = byte(program);
        editor.edit({desk.idOf(0)}, entry);
    }
};

TEST_F(LoadedMessage, StaysAsItIsWhenAnotherRuleIsEdited) {
    auto entry = editor.rules()[1].rule;
    entry.output.delay.ms = 5;
    editor.edit({desk.idOf(1)}, entry);
    EXPECT_EQ(desk.installed[0], oldProgramChange("old"));
    EXPECT_EQ(editor.alertErrorMessage(), std::nullopt);
}

TEST_F(LoadedMessage, IsSentAndDuplicatedAsItIs) {
    editor.send(desk.idOf(0));
    EXPECT_EQ(desk.sent, std::vector{oldProgramChange("old").output.message});
    editor.duplicate({desk.idOf(0)});
    EXPECT_EQ(desk.installed[1], oldProgramChange("old"));
}

TEST_F(LoadedMessage, ThatIsEditedGetsWhatTheCardShowsAndTheAlertSaysSo) {
    setProgram(10);
    EXPECT_EQ(desk.installed[0].output.message, programChange(channel(3), 0, byte(10)));
    EXPECT_EQ(editor.alertErrorMessage(),
              "Rule 1 \"old\" was edited, which has changed more than you see: its program "
              "change has no bank, and gets bank 0. Undo brings it back.");
    editor.dismissAlert();
    setProgram(11);
    EXPECT_EQ(editor.alertErrorMessage(), std::nullopt) << "It is said once.";
    editor.undo();
    editor.undo();
    EXPECT_EQ(desk.installed[0], oldProgramChange("old"));
}

TEST_F(LoadedMessage, OfARuleThatIsToWaitForARangeBecomesWhatTheCardShows) {
    auto old = oldProgramChange("old");
    old.trigger = onNoteOn(exactly(36));
    desk.model->setRules({elementFromRule(old)});
    editor.setRange({desk.idOf(0)}, 36, 36);
    EXPECT_EQ(rulesOf(editor.rules()), std::vector{old});
    EXPECT_EQ(editor.alertErrorMessage(), std::nullopt);
    editor.setRange({desk.idOf(0)}, 36, 47);
    EXPECT_EQ(desk.installed.size(), 12U);
    EXPECT_EQ(editor.cards().size(), 1U);
    EXPECT_EQ(editor.alertErrorMessage(),
              "Rule 1 \"old\" was edited, which has changed more than you see: its program change has no "
              "bank, and gets bank 0. Undo brings it back.");
}

TEST_F(LoadedMessage, ThatGetsAnotherChannelWithOthersIsToldOfAsWell) {
    desk.model->setRules({elementFromRule(rule(onLoad(), send(noteOn(0, 60, 64)), "other")),
                          elementFromRule(oldProgramChange("old")),
                          elementFromRule(oldProgramChange("older"))});
    const auto all = std::vector{desk.idOf(0), desk.idOf(1), desk.idOf(2)};
    editor.changeChannel(all, {exactly(7), std::nullopt});
    EXPECT_EQ(editor.alertErrorMessage(), std::nullopt) << "Their messages are what they were.";
    editor.changeChannel(all, {std::nullopt, channel(7)});
    EXPECT_EQ(desk.installed[1].output.message, programChange(channel(7), 0, byte(9)));
    EXPECT_EQ(editor.alertErrorMessage(),
              "Rule 2 \"old\" was edited, which has changed more than you see: its program change has no "
              "bank, and gets bank 0. The same holds for 1 more. Undo brings it back.");
}

TEST_F(LoadedMessage, OfAnImportIsTold) {
    const auto notice = noticeBeforeEditing(elementsFrom({oldProgramChange("imported")}));
    editor.replaceAll({elementFromRule(oldProgramChange("imported"))}, "Import");
    ASSERT_TRUE(notice);
    EXPECT_EQ(editor.alertErrorMessage(), notice);
    EXPECT_EQ(desk.installed, std::vector{oldProgramChange("imported")});
}

TEST_F(RuleListEditorTest, WhileTheUnitRunsRulesThatCannotBeShownNothingIsAdded) {
    desk.model->setNotEditable("Rule 1 \"x\" cannot be edited.");
    desk.addNoteOn();
    EXPECT_EQ(desk.installs, 0U);
    EXPECT_EQ(editor.alertErrorMessage(), "Rule 1 \"x\" cannot be edited.");
    editor.replaceAll(named({"a"}), "Import");
    EXPECT_EQ(desk.installs, 1U);
    EXPECT_EQ(editor.whyNotEditable(), std::nullopt);
}

TEST_F(RuleListEditorTest, SaysWhenAPresetHasTakenThePlaceOfAllRulesAndNeverOfAnotherChange) {
    int replaced = 0;
    editor.setOnReplaced([&] { ++replaced; });
    const auto saysAfter = [&](const std::function<void()>& change) {
        const auto before = replaced;
        change();
        return replaced - before;
    };
    const auto undo = [&] { editor.undo(); };
    const auto redo = [&] { editor.redo(); };
    const auto import = [&] { editor.replaceAll(named({"x", "y"}), "Import"); };
    EXPECT_EQ(saysAfter([&] { desk.addNoteOn(); }), 0);
    EXPECT_EQ(saysAfter([&] { editor.remove({desk.idOf(0)}); }), 0);
    EXPECT_EQ(saysAfter(undo), 0);
    EXPECT_EQ(saysAfter(redo), 0);
    EXPECT_EQ(saysAfter(import), 1) << "into an empty list";
    EXPECT_EQ(saysAfter([&] { editor.remove({desk.idOf(0)}); }), 0);
    EXPECT_EQ(saysAfter(import), 1) << "over another list";
    EXPECT_EQ(saysAfter(undo), 1);
    EXPECT_EQ(saysAfter(redo), 1);
    EXPECT_EQ(saysAfter([&] { desk.model->setRules(named({"from the unit"})); }), 0);
    desk.model->setNotEditable("not shown", PluginData{});
    EXPECT_EQ(saysAfter(import), 1) << "over rules that are not shown";
    EXPECT_EQ(saysAfter(undo), 1);
    EXPECT_EQ(saysAfter(redo), 1);
}

TEST_F(RuleListEditorTest, SaysThatAPresetThatCameIntoAnEmptyListGoesAndComesAgain) {
    int replaced = 0;
    editor.setOnReplaced([&] { ++replaced; });
    editor.replaceAll(named({"x", "y"}), "Import");
    editor.undo();
    EXPECT_EQ(replaced, 2);
    editor.redo();
    EXPECT_EQ(replaced, 3);
    editor.remove({desk.idOf(0), desk.idOf(1)});
    editor.undo();
    editor.redo();
    EXPECT_EQ(replaced, 3) << "Nothing has taken their place.";
}

TEST_F(RuleListEditorTest, WithNothingToUndoOrRedoNothingReachesTheEngine) {
    desk.model->setNotEditable("not shown");
    editor.undo();
    editor.redo();
    EXPECT_EQ(desk.installs, 0U);
    EXPECT_EQ(editor.whyNotEditable(), "not shown");
}

TEST_F(RuleListEditorTest, WhatChangesNothingDoesNotReachTheEngine) {
    desk.addNoteOns(2);
    const auto installs = desk.installs;
    const auto id = desk.idOf(0);
    const auto entry = editor.rules()[0].rule;
    editor.edit({id}, entry);
    editor.step({id}, entry, 1);
    editor.changeTriggerType({id}, entry.trigger.type);
    editor.learn({id}, {entry.trigger});
    editor.move({id}, 0);
    editor.setOff({id}, false);
    editor.changeChannel({id}, {std::nullopt, entry.output.channel});
    editor.changeChannel({UUID()}, {exactly(4), std::nullopt});
    EXPECT_EQ(desk.installs, installs);
    EXPECT_EQ(editor.undoName(), "Add Message #2");
    editor.undo();
    editor.undo();
    EXPECT_TRUE(editor.replaceAll({}, "Import"));
    EXPECT_EQ(desk.installs, installs + 2) << "Nothing took the place of nothing.";
    EXPECT_EQ(editor.undoName(), std::nullopt);
}

TEST_F(RuleListEditorTest, WhoeverSeesANewListCanUndoIt) {
    std::vector<std::optional<std::string>> seen;
    const auto observation = desk.model->observeRules([&] { seen.push_back(editor.undoName()); });
    desk.addNoteOn();
    editor.undo();
    EXPECT_EQ(seen, (std::vector<std::optional<std::string>>{"Add Message #1", std::nullopt}));
}

TEST_F(RuleListEditorTest, ARuleThatIsSwitchedOffKeepsItsPlaceAndDoesNotRun) {
    desk.addNoteOns(3);
    const auto before = editor.rules();
    editor.setOff({desk.idOf(1)}, true);
    EXPECT_EQ(desk.names(), (Names{"Message #1", "Message #2", "Message #3"}));
    EXPECT_EQ(desk.installed, (std::vector{ruleFromElement(before[0]), ruleFromElement(before[2])}));
    EXPECT_EQ(desk.shelf, (RuleShelf{{1, ruleFromElement(before[1])}}));
    EXPECT_EQ(editor.undoName(), "Switch off Message #2");
    editor.undo();
    EXPECT_EQ(editor.rules(), before);
    EXPECT_EQ(desk.installed.size(), 3U);
    EXPECT_TRUE(desk.shelf.empty());
    editor.redo();
    editor.setOff({desk.idOf(1)}, false);
    EXPECT_EQ(editor.undoName(), "Switch on Message #2");
    EXPECT_EQ(desk.installed, rulesOf(before));
}

TEST_F(RuleListEditorTest, SeveralRulesAreSwitchedOffInOneStep) {
    desk.addNoteOns(3);
    editor.setOff({desk.idOf(2), desk.idOf(0)}, true);
    EXPECT_EQ(desk.installed.size(), 1U);
    EXPECT_EQ(editor.undoName(), "Switch off Message #1 (2 rules)");
    editor.undo();
    EXPECT_EQ(desk.installed.size(), 3U);
}

TEST_F(RuleListEditorTest, SwitchingOffWhatIsOffIsNoStep) {
    desk.addNoteOns(1);
    editor.setOff({desk.idOf(0)}, true);
    const auto installs = desk.installs;
    editor.setOff({desk.idOf(0)}, true);
    editor.setOff({UUID()}, true);
    editor.undo();
    EXPECT_EQ(desk.installs, installs + 1);
    EXPECT_EQ(editor.undoName(), "Add Message #1");
}

TEST_F(RuleListEditorTest, ARuleThatIsOffIsEditedMovedAndCopiedAsAnyOther) {
    desk.addNoteOns(2);
    editor.setOff({desk.idOf(0)}, true);
    auto entry = editor.rules()[0].rule;
    entry.name = "off";
    editor.edit({desk.idOf(0)}, entry);
    editor.duplicate({desk.idOf(0)});
    editor.move({desk.idOf(1)}, 2);
    EXPECT_EQ(desk.names(), (Names{"off", "Message #2", "off"}));
    EXPECT_EQ(desk.installed.size(), 1U);
    ASSERT_EQ(desk.shelf.size(), 2U);
    EXPECT_EQ(desk.shelf[0].place, 0U);
    EXPECT_EQ(desk.shelf[1].place, 1U);
}

TEST_F(RuleListEditorTest, ARuleThatTheEngineRefusesStaysOff) {
    desk.addNoteOns(1);
    editor.setOff({desk.idOf(0)}, true);
    auto entry = editor.rules()[0].rule;
    entry.output.delay.ms = -1;
    editor.edit({desk.idOf(0)}, entry);
    EXPECT_EQ(editor.alertErrorMessage(), std::nullopt);
    editor.setOff({desk.idOf(0)}, false);
    EXPECT_TRUE(editor.rules()[0].off);
    EXPECT_TRUE(editor.alertErrorMessage().has_value());
}

TEST_F(RulesNotShown, ComeBackWithWhatIsSwitchedOffAmongThem) {
    const PluginData document{rulesNotShown(), {{1, rulesNotShown()[0]}}};
    desk.model->setNotEditable("because", document);
    EXPECT_EQ(editor.storedRules(), document);
    editor.replaceAll(named({"x"}), "Import");
    EXPECT_TRUE(desk.shelf.empty());
    editor.undo();
    EXPECT_EQ(desk.shelf, document.shelf);
    EXPECT_EQ(editor.storedRules(), document);
}

TEST_F(RuleListEditorTest, SeveralRulesAreGivenAnotherChannelInOneStep) {
    desk.addNoteOns(3);
    editor.changeTriggerType({desk.idOf(0)}, TriggerEntryType::NoteOn);
    editor.changeTriggerType({desk.idOf(2)}, TriggerEntryType::NoteOn);
    const auto before = editor.rules();
    editor.changeChannel({desk.idOf(2), desk.idOf(1), desk.idOf(0)}, {exactly(4), std::nullopt});
    EXPECT_EQ(editor.rules()[0].rule.trigger.channel, exactly(4));
    EXPECT_EQ(editor.rules()[1], before[1]) << "On load there is no channel.";
    EXPECT_EQ(editor.rules()[2].rule.trigger.channel, exactly(4));
    EXPECT_EQ(editor.undoName(), "Edit Message #1 (3 rules)");
    expectInstalled();
    editor.undo();
    EXPECT_EQ(editor.rules(), before);
}

TEST_F(RuleListEditorTest, WhatIsPastedStandsBehindTheChosenRulesAndIsOneStep) {
    desk.addNoteOns(3);
    const auto before = editor.rules();
    EXPECT_TRUE(editor.paste({desk.idOf(1), desk.idOf(0)}, named({"x", "y"})));
    EXPECT_EQ(desk.names(), (Names{"Message #1", "Message #2", "x", "y", "Message #3"}));
    EXPECT_EQ(editor.undoName(), "Paste x (2 rules)");
    expectInstalled();
    editor.undo();
    EXPECT_EQ(editor.rules(), before);
    EXPECT_TRUE(editor.paste({}, named({"z"})));
    EXPECT_EQ(desk.names().back(), "z");
    EXPECT_EQ(editor.undoName(), "Paste z");
}

TEST_F(RuleListEditorTest, ARunThatIsPastedIsFoldedAndTheListIsNot) {
    RuleList run;
    for (const std::uint8_t note : {std::uint8_t{36}, std::uint8_t{37}, std::uint8_t{38}}) {
        run.push_back(elementFromRule(rule(onNoteOn(exactly(note)), send(noteOn(1, 60, 100)), "split")));
    }
    EXPECT_TRUE(editor.paste({}, run));
    ASSERT_EQ(editor.cards().size(), 1U);
    EXPECT_EQ(editor.cards()[0].count, 3U);
}

TEST_F(RuleListEditorTest, OfWhatIsPastedItIsSaidWhichRulesRunAsTheyWereLoaded) {
    desk.addNoteOns(2);
    EXPECT_TRUE(editor.paste({desk.idOf(0)}, {elementFromRule(oldProgramChange("pasted"))}));
    ASSERT_TRUE(editor.alertErrorMessage().has_value());
    EXPECT_EQ(editor.alertErrorMessage()->substr(0, 15), "Rule 2 \"pasted\"");
}

TEST_F(RuleListEditorTest, NothingIsPastedOutOfNothing) {
    desk.addNoteOns(1);
    EXPECT_FALSE(editor.paste({desk.idOf(0)}, {}));
    EXPECT_EQ(editor.undoName(), "Add Message #1");
}

TEST_F(RulesNotShown, NothingIsPastedAmongThem) {
    EXPECT_FALSE(editor.paste({}, named({"x"})));
    EXPECT_EQ(editor.alertErrorMessage(), editor.whyNotEditable());
    EXPECT_EQ(editor.storedRules(), PluginData{rulesNotShown()});
}

}  // namespace
}  // namespace quillo
