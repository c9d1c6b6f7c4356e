// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "editor-main/EditorStage.hpp"
#include "editor/NewRuleSelector.hpp"
#include "editor/Style.hpp"
#include "programs/editor/DemoRules.hpp"
#include "support/Pictures.hpp"

namespace quillo {
namespace {

using namespace test;

/// The line of a rule's card.
template <class Change>
std::string lineOf(Change change) {
    EditorStage stage({ruleWith(change)});
    stage.press('-', ctrl);
    return stage.card().line().text().toStdString();
}

TEST(CardLine, SaysWhatARuleWaitsForAndWhatItSends) {
    EXPECT_EQ(lineOf([](RuleEntry& entry) {
                  entry.trigger.type = TriggerEntryType::ControlChange;
                  entry.trigger.controller = 64;
                  entry.trigger.controllerValue = TriggerValueV2::Value{127};
                  entry.output.type = OutputEntryType::ProgramChange;
                  entry.output.program = GenericByteV2::Value{48};
              }),
              "CC 64 : Sustain 127 any channel \u2192 Program Change 48 channel 1");
    EXPECT_EQ(lineOf([](RuleEntry& entry) {
                  entry.trigger.type = TriggerEntryType::NoteOn;
                  entry.trigger.note = TriggerValueV2::Value{36};
                  entry.trigger.channel = TriggerValueV2::Value{0};
                  entry.trigger.passThrough = PassThroughV2::EatMatching;
                  entry.output.note = GenericByteV2::Value{48};
                  entry.output.delay.ms = 300;
              }),
              "Note On 36 (C1) channel 1 Consume matching \u2192 Note On 48 (C2) 64 channel 1 + 300 ms");
    EXPECT_EQ(lineOf([](RuleEntry& entry) {
                  entry.output.type = OutputEntryType::SystemExclusive;
                  entry.output.systemExclusive = {0x7E, 0x7F};
              }),
              "On Load \u2192 SysEx 7E 7F");
    EXPECT_EQ(lineOf([](RuleEntry& entry) {
                  entry.trigger.type = TriggerEntryType::ProgramChange;
                  entry.output.type = OutputEntryType::ProgramChange;
                  entry.output.bank = 3;
                  entry.output.program = GenericByteV2::RespectiveTriggerByte{};
              }),
              "Program Change any any channel \u2192 Program Change bank 3 From Trigger channel 1");
}

TEST(CardLine, SaysTheRangeOfARunAndItsTransposition) {
    std::vector<Rule> rules;
    for (std::uint8_t note = 36; note < 48; ++note) {
        rules.push_back(ruleWith([note](RuleEntry& entry) {
            entry.name = "Split";
            entry.trigger.type = TriggerEntryType::NoteOn;
            entry.trigger.note = TriggerValueV2::Value{note};
            entry.output.note = GenericByteV2::Value{static_cast<std::uint8_t>(note + 12)};
            entry.output.channel = RuleOutputChannelV2::TriggerChannel{};
        }));
    }
    EditorStage stage(std::move(rules));
    stage.press('-', ctrl);
    EXPECT_EQ(stage.card().line().text().toStdString(),
              "Note On C1 \u2013 B1 any channel \u2192 Note On From Trigger + 12 64");
    for (const auto* typed : {"c1-b1", "c1 - b1", "from trigger + 12"}) {
        stage.view().header().openSearch(typed);
        EXPECT_EQ(stage.view().header().searchField().finds(), "1 found") << typed;
    }
}

TEST(CardLine, LeavesOutWhatGoesWithoutSaying) {
    EXPECT_EQ(lineOf([](RuleEntry& entry) {
                  entry.trigger.type = TriggerEntryType::NoteOn;
                  entry.output.note = GenericByteV2::RespectiveTriggerByte{};
                  entry.output.velocity = GenericByteV2::RespectiveTriggerByte{};
                  entry.output.channel = RuleOutputChannelV2::TriggerChannel{};
              }),
              "Note On any any channel \u2192 Note On");
    EXPECT_EQ(lineOf([](RuleEntry& entry) {
                  entry.trigger.type = TriggerEntryType::ControlChange;
                  entry.trigger.controller = 1;
                  entry.output.type = OutputEntryType::ControlChange;
                  entry.output.controller = GenericByteV2::Value{7};
                  entry.output.controllerValue = GenericByteV2::RespectiveTriggerByte{};
              }),
              "CC 1 : Modulation any channel \u2192 CC 7 : Volume From Trigger channel 1");
}

/// The rules of a performance and of a demonstration, and a way to see them in one line.
class OneLine : public testing::Test {
protected:
    RuleView& card(std::size_t position = 0) { return stage.card(position); }
    static juce::Component& grip(RuleView& card) { return *findBelow<MyDragAndDropForEachDragHandle>(card); }

    EditorStage stage{performanceRules()};
};

TEST_F(OneLine, CtrlMinusShowsEachRuleInOneLineAndWithItsFieldsAgain) {
    const auto height = card().getHeight();
    EXPECT_TRUE(stage.press('-', ctrl));
    for (std::size_t position = 0; position < 4; ++position) {
        EXPECT_EQ(card(position).getHeight(), style::cardInOneLine);
        EXPECT_TRUE(card(position).line().isVisible());
        EXPECT_FALSE(card(position).trigger().isVisible());
        EXPECT_FALSE(card(position).buttons().isVisible());
    }
    EXPECT_TRUE(stage.press('-', ctrl));
    EXPECT_EQ(card().getHeight(), height);
    EXPECT_FALSE(card().line().isVisible());
    EXPECT_TRUE(card().trigger().isVisible());
}

TEST_F(OneLine, TheHeadersButtonDoesTheSameAndSaysWhatItWillDo) {
    auto& button = stage.view().header().formButton();
    EXPECT_EQ(button.getTooltip(), "One line for each rule (Ctrl+-)");
    click(button);
    EXPECT_TRUE(card().isInOneLine());
    EXPECT_EQ(button.getTooltip(), "Fields for each rule (Ctrl+-)");
    click(button);
    EXPECT_FALSE(card().isInOneLine());
    stage.view().setSize(300, 300);
    click(stage.view().header().moreButton());
    stage.pickInMenu("One line");
    EXPECT_TRUE(card().isInOneLine());
}

TEST_F(OneLine, AClickOnALineOpensItsCardAndADoubleClickOnTheGripClosesIt) {
    stage.press('-', ctrl);
    click(card(1).line());
    EXPECT_FALSE(card(1).isInOneLine());
    EXPECT_TRUE(card(0).isInOneLine());
    click(grip(card(1)), {8, 30}, 2);
    EXPECT_TRUE(card(1).isInOneLine());
    EXPECT_TRUE(grip(card(1)).hasKeyboardFocus(false)) << "A click on it chooses the card for the keys.";
}

TEST_F(OneLine, ReturnOnTheGripGivesTheCardItsOtherForm) {
    grip(card(1)).grabKeyboardFocus();
    EXPECT_TRUE(stage.press(juce::KeyPress::returnKey));
    EXPECT_TRUE(card(1).isInOneLine());
    EXPECT_FALSE(card(0).isInOneLine());
    EXPECT_TRUE(stage.press(juce::KeyPress::returnKey));
    EXPECT_FALSE(card(1).isInOneLine());
    EXPECT_TRUE(grip(card(1)).hasKeyboardFocus(false));
}

TEST_F(OneLine, TheKeyboardGoesToTheGripOfACardWhoseFieldsGo) {
    field(card(1).output(), "Program").grabKeyboardFocus();
    stage.press('-', ctrl);
    EXPECT_TRUE(grip(card(1)).hasKeyboardFocus(false));
}

TEST_F(OneLine, TheNameIsEditedThereAsWell) {
    stage.press('-', ctrl);
    stage.typeInto(card().header(), "Fill B");
    EXPECT_EQ(stage.installed()[0].name, "Fill B");
    EXPECT_TRUE(card().isInOneLine());
}

TEST_F(OneLine, ItFollowsTheRule) {
    stage.press('-', ctrl);
    auto changed = stage.entry(0);
    changed.output.delay.ms = 5;
    stage.editor().edit({stage.id(0)}, changed);
    EXPECT_TRUE(card().line().text().endsWith("+ 5 ms"));
}

TEST_F(OneLine, HitsStandAtItsRightWhereThereIsRoom) {
    stage.press('-', ctrl);
    EXPECT_EQ(card().status().getRight(), card().onOffSwitch().getX() - style::titleGap);
    EXPECT_EQ(card().status().remark().words, "never fired since load");
    EXPECT_EQ(card().status().getTooltip(), "");
    EXPECT_LE(card().line().getRight(), card().status().getX());
    stage.view().setSize(500, 250);
    EXPECT_TRUE(card().status().getBounds().isEmpty());
    EXPECT_EQ(card().line().getRight() - CardLine::markMargin, card().onOffSwitch().getX() - style::titleGap);
}

TEST_F(OneLine, WhatIsCutIsTheTooltip) {
    stage.press('-', ctrl);
    stage.view().setSize(1000, 640);
    EXPECT_EQ(card().line().getTooltip(), "");
    stage.view().setSize(320, 480);
    EXPECT_EQ(card().line().getTooltip(), card().line().text());
    EXPECT_EQ(card().line().getTitle(), card().line().text());
}

TEST_F(OneLine, ARuleThatIsAddedHasItsFields) {
    stage.press('-', ctrl);
    stage.editor().add(MIDIRuleType::OutputType{OutputEntryType::NoteOn});
    EXPECT_TRUE(card(4).isInOneLine()) << "By an import, for instance.";
    click(findBelow<NewRuleSelector>(stage.view())->button());
    stage.pickInMenu("Note On");
    EXPECT_FALSE(card(5).isInOneLine());
}

TEST_F(OneLine, TheFormIsThereAgainInTheNextEditorOfTheUnit) {
    stage.press('-', ctrl);
    const auto state = stage.desk.session().save();
    QuilloView next(stage.desk.session());
    next.setSize(820, 640);
    const auto& first = next.editor().rules()[0].id;
    EXPECT_TRUE(next.card(first)->isInOneLine());
    EXPECT_EQ(next.header().formButton().getTooltip(), "Fields for each rule (Ctrl+-)");
    next.keyPressed(juce::KeyPress('-', ctrl, 0));
    EXPECT_EQ(stage.desk.session().save(), state) << "The document knows nothing of it.";
}

TEST(OneLineList, SixteenRulesAreInSight) {
    EditorStage stage(manyRules(20));
    stage.press('-', ctrl);
    int whole = 0;
    stage.view().list().forEachRow([&](std::size_t /*position*/, juce::Component& card) {
        const auto area = stage.view().list().getLocalArea(&card, card.getLocalBounds());
        whole += stage.view().list().getLocalBounds().contains(area) ? 1 : 0;
    });
    EXPECT_GE(whole, 16);
}

TEST(OneLineList, TenThousandRulesTakeTheirHeightsWithoutBeingRead) {
    EditorStage stage(manyRules(10'000));
    stage.press('-', ctrl);
    stage.view().list().setScrollPosition(1'000'000);
    const auto row = style::cardInOneLine + style::cardGap;
    EXPECT_GE(stage.view().list().scrollPosition(), 9980 * row);
    EXPECT_LE(stage.view().list().scrollPosition(), 10'000 * row);
}

}  // namespace
}  // namespace quillo
