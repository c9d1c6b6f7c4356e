// SPDX-License-Identifier: GPL-3.0-or-later
// A trigger is learned from what is played, in the editor.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "editor-main/EditorStage.hpp"
#include "editor/AlertView.hpp"
#include "editor/LearnOverlay.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class LearnATrigger : public testing::Test {
protected:
    void open(std::vector<Rule> rules = {rule(onLoad(), send(controlChange(0, 7, 1)), "Answer")}) {
        stage = std::make_unique<EditorStage>(std::move(rules));
    }

    LearnOverlay& learning() {
        auto* open = dynamic_cast<LearnOverlay*>(stage->view().overlay());
        if (open == nullptr) {
            throw std::logic_error("nothing is being learned");
        }
        return *open;
    }
    bool isLearning() { return dynamic_cast<LearnOverlay*>(stage->view().overlay()) != nullptr; }
    void learn(std::size_t position = 0) { click(stage->card(position).learnButton()); }
    void play(const std::vector<std::vector<std::uint8_t>>& messages) { stage->render(messages); }
    void pick(int row) { click(learning(), learning().rowArea(row).getCentre()); }
    void press(int code) { key(stage->window, code); }

    std::vector<std::string> offered() {
        std::vector<std::string> words;
        for (const auto& offer : learning().offers()) {
            words.push_back(offer.words);
        }
        return words;
    }

    std::unique_ptr<EditorStage> stage;
};

TEST_F(LearnATrigger, FromTheButtonToAWorkingRuleItIsTwoClicks) {
    open();
    learn();
    play({{0xB0, 64, 127}});
    pick(1);
    EXPECT_FALSE(isLearning());
    EXPECT_EQ(stage->installed(), (std::vector{rule(onControlChange(64, exactly(127), exactly(0)),
                                                    send(controlChange(0, 7, 1)), "Answer")}));
    stage->sent.clear();
    play({{0xB0, 64, 127}});
    EXPECT_THAT(stage->sent, ElementsAre(ElementsAre(0xB0, 7, 1), ElementsAre(0xB0, 64, 127)));
}

TEST_F(LearnATrigger, OneStepOfUndoTakesItBack) {
    open();
    const auto before = stage->installed();
    learn();
    play({{0x90, 60, 1}, {0x80, 60, 0}});
    pick(1);
    EXPECT_EQ(stage->installed().size(), 2U);
    stage->press('z', juce::ModifierKeys::commandModifier);
    EXPECT_EQ(stage->installed(), before);
}

TEST_F(LearnATrigger, ARuleThatTheHostHasReplacedMeanwhileLearnsNothing) {
    open();
    learn();
    const std::vector others{rule(onNoteOff(), send(noteOn(0, 1, 1)), "Other")};
    ASSERT_EQ(stage->desk.session().restore(PluginData{others}.write()), std::nullopt);
    play({{0xB0, 64, 127}});
    pick(0);
    EXPECT_EQ(stage->installed(), others);
    EXPECT_EQ(stage->editor().undoName(), std::nullopt);
}

TEST_F(LearnATrigger, OffersOnlyWhatCameInSinceItIsOpen) {
    open();
    play({{0x90, 48, 1}});
    learn();
    EXPECT_THAT(offered(), IsEmpty());
    play({{0x90, 60, 1}});
    EXPECT_THAT(offered(), ElementsAre("Note On C3, channel 1", "Note On and Note Off C3, channel 1"));
    EXPECT_EQ(learning().highlightedRow(), 0);
}

TEST_F(LearnATrigger, OffersWhatCameInEvenInAFlood) {
    open();
    learn();
    for (int cycle = 0; cycle < 5; ++cycle) {
        play(std::vector<std::vector<std::uint8_t>>(300, {0xF8}));
    }
    play({{0xC0, 5}, {0xF8}});
    EXPECT_THAT(offered(), ElementsAre("Program Change 5, channel 1"));
}

TEST_F(LearnATrigger, WhatComesInWhileTheLogIsEmptiedIsOfferedAllTheSame) {
    open();
    learn();
    play({{0x90, 60, 1}});
    stage->desk.session().model()->clearInLog();
    play({{0xFA}});
    EXPECT_THAT(offered().front(), StartsWith("MIDI Transport Start"));
}

TEST_F(LearnATrigger, EscapeAClickOutsideAndTabLeaveTheRuleAsItWas) {
    open();
    const auto before = stage->installed();
    const auto closeBy = [&](const std::function<void()>& act) {
        learn();
        play({{0x90, 60, 1}});
        ASSERT_TRUE(isLearning());
        act();
        EXPECT_FALSE(isLearning());
        EXPECT_EQ(stage->installed(), before);
    };
    closeBy([this] { press(juce::KeyPress::escapeKey); });
    closeBy([this] { press(juce::KeyPress::tabKey); });
    closeBy([this] { click(learning(), {1, learning().getHeight() - 1}); });
}

TEST_F(LearnATrigger, ReturnBeforeAnythingCameInDoesNothing) {
    open();
    learn();
    press(juce::KeyPress::returnKey);
    press(juce::KeyPress::spaceKey);
    EXPECT_TRUE(isLearning());
}

TEST_F(LearnATrigger, TheLikeliestIsHighlightedWhileTheUserPlays) {
    open();
    learn();
    play({{0x90, 60, 1}});
    play({{0xB0, 1, 0}, {0xB0, 1, 100}});
    EXPECT_THAT(offered().front(), StartsWith("CC 1 "));
    EXPECT_EQ(learning().highlightedRow(), 0);
}

TEST_F(LearnATrigger, RowsStandStillFromWhenTheArrowsOrThePointerReachForThem) {
    open();
    learn();
    play({{0x90, 60, 1}});
    press(juce::KeyPress::downKey);
    play({{0xB0, 1, 0}, {0xB0, 1, 100}});
    EXPECT_THAT(offered().front(), StartsWith("Note On C3"));
    EXPECT_EQ(learning().highlightedRow(), 1);
    press(juce::KeyPress::upKey);
    play({{0xB0, 1, 1}});
    EXPECT_THAT(offered().front(), StartsWith("CC 1 "));
    moveMouse(learning(), learning().rowArea(2).getCentre());
    play({{0xB0, 2, 0}, {0xB0, 2, 127}, {0xB0, 2, 0}, {0xB0, 2, 127}, {0xB0, 2, 0}});
    EXPECT_THAT(offered().front(), StartsWith("CC 1 "));
    EXPECT_EQ(learning().highlightedRow(), 2);
    moveMouse(learning(), {1, 1});
    EXPECT_THAT(offered().front(), StartsWith("CC 2 "));
    EXPECT_EQ(learning().highlightedRow(), 0);
}

TEST_F(LearnATrigger, TheButtonIsInColourMeanwhileAndHasAName) {
    open();
    auto& button = stage->card().learnButton();
    EXPECT_EQ(button.getTitle(), "Learn the trigger");
    EXPECT_FALSE(button.isLearning());
    learn();
    EXPECT_TRUE(button.isLearning());
    EXPECT_EQ(learning().getTitle(), juce::String::fromUTF8("Play, or move a controller …"));
    press(juce::KeyPress::escapeKey);
    EXPECT_FALSE(button.isLearning());
}

TEST_F(LearnATrigger, ANewRuleIsLearnedFromTheMenuOfAddNew) {
    open({});
    auto* selector = findBelow<NewRuleSelector>(stage->view().list());
    click(selector->button());
    stage->pickInMenu("Learn");
    play({{0x92, 60, 1}});
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage->installed(),
              (std::vector{rule(onNoteOn(exactly(60), exactly(2)), send(noteOn(0, 60, 64)), "Message #1")}));
}

TEST_F(LearnATrigger, TheKeyboardAloneLearnsFromAFreshWindow) {
    open();
    for (int part = 0; part < 30 && EditorStage::focus() != "Learn the trigger"; ++part) {
        stage->press(juce::KeyPress::tabKey);
        settle();
    }
    ASSERT_EQ(EditorStage::focus(), "Learn the trigger");
    stage->press(juce::KeyPress::returnKey);
    settle();
    play({{0xFC}});
    stage->press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage->installed()[0].trigger, onMIDIStop());
    EXPECT_EQ(EditorStage::focus(), "Learn the trigger") << "The focus is where it was.";
}

TEST_F(LearnATrigger, AClickBesideTheRowsLeavesThePanelTheKeyboard) {
    open();
    learn();
    play({{0x90, 60, 1}});
    click(learning(), learning().panelArea().getTopLeft().translated(30, 2));
    press(juce::KeyPress::returnKey);
    EXPECT_FALSE(isLearning()) << "It was taken.";
    EXPECT_EQ(stage->installed()[0].trigger, onNoteOn(exactly(60), exactly(0)));
}

TEST_F(LearnATrigger, ThePanelLiesInsideTheWindowWithItsRowsInSight) {
    open();
    for (const auto& [width, height] : {std::pair(820, 640), std::pair(500, 250), std::pair(200, 200)}) {
        stage->view().setSize(width, height);
        learn();
        play({{0xB0, 64, 0}, {0xB0, 64, 127}, {0x90, 60, 1}});
        EXPECT_TRUE(stage->view().getLocalBounds().contains(learning().panelArea())) << width;
        EXPECT_TRUE(learning().panelArea().contains(learning().rowArea(1))) << width;
        press(juce::KeyPress::escapeKey);
    }
}

TEST_F(LearnATrigger, NothingOpensOverAnAlert) {
    open();
    stage->editor().alert("No.");
    stage->card().learnButton().keyPressed(juce::KeyPress(juce::KeyPress::returnKey));
    EXPECT_NE(dynamic_cast<AlertView*>(stage->view().overlay()), nullptr);
}

}  // namespace
}  // namespace quillo
