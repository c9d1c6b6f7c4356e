// SPDX-License-Identifier: GPL-3.0-or-later
// The editor used without a mouse, from a window that was just opened.
#include <gtest/gtest.h>

#include <memory>

#include "editor-main/EditorStage.hpp"
#include "persistence/PluginData.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Names = std::vector<std::string>;

class KeyboardOnly : public testing::Test {
protected:
    void open(const Names& names = {}) {
        std::vector<Rule> rules;
        for (const auto& name : names) {
            rules.push_back(rule(onLoad(), send(noteOn(0, 60, 100)), name));
        }
        stage = std::make_unique<EditorStage>(std::move(rules));
    }

    void press(int code, juce::ModifierKeys modifiers = {}) {
        stage->press(code, modifiers);
        settle();
    }

    /// Presses Tab until a part of this name has the focus.
    void tabTo(const std::string& title, juce::ModifierKeys modifiers = {}) {
        constexpr int mostParts = 100;
        for (int part = 0; part < mostParts; ++part) {
            press(tab, modifiers);
            ASSERT_NE(EditorStage::focus(), "");
            if (EditorStage::focus() == title) {
                return;
            }
        }
        FAIL() << "Nothing is called " << title;
    }

    const int tab = juce::KeyPress::tabKey;
    const int enter = juce::KeyPress::returnKey;
    std::unique_ptr<EditorStage> stage;
};

TEST_F(KeyboardOnly, TabEntersFromNothingAtEitherEnd) {
    open({"a"});
    press(tab);
    EXPECT_EQ(EditorStage::focus(), "Import");
    juce::Component::unfocusAllComponents();
    open({"a"});
    press(tab, shift);
    EXPECT_TRUE(stage->view().logger().hasKeyboardFocus(true));
}

TEST_F(KeyboardOnly, EverythingOfAnEmptyEditorIsReached) {
    open();
    Names reached;
    for (press(tab); reached.empty() || EditorStage::focus() != reached.front(); press(tab)) {
        reached.push_back(EditorStage::focus());
        ASSERT_LT(reached.size(), 20U);
    }
    EXPECT_EQ(reached, (Names{"Import", "Export", "One line for each rule", "Search rules", "Playing",
                              "Panic", "Docs / Donate", "More", "Add new", "Call strings by pedal",
                              "Split off a bass", "Repeat notes as an echo", "Open the logs"}));
}

TEST_F(KeyboardOnly, EverythingOfTheOpenedLogsIsReached) {
    const auto* const question = "What would the last 100 events do now?";
    open();
    for (const auto shared : {false, true}) {
        if (shared) {
            stage->view().setSize(500, 250);
        }
        tabTo(shared ? "Collapse the logs" : "Open the logs");
        if (!shared) {
            press(enter);
            stage->view().logger().advance(InOutLogger::movement);
        }
        Names reached;
        for (press(tab); EditorStage::focus() != "Import"; press(tab)) {
            reached.push_back(EditorStage::focus());
            ASSERT_LT(reached.size(), 20U);
        }
        EXPECT_EQ(reached,
                  (shared ? Names{"In:", "Out:", "Waiting: 0", question, "Out:", "Empty the logs"}
                          : Names{"In:", question, "Out:", "Cancel all", "Waiting", "Empty the logs"}));
    }
    tabTo("Waiting: 0", shift);
    press(enter);
    tabTo("Cancel all");
    tabTo("Waiting");
}

TEST_F(KeyboardOnly, TheFirstRuleIsMade) {
    open();
    tabTo("Add new");
    press(enter);
    stage->pickInMenu("CC");
    tabTo("Delay (ms)", shift);
    press('2');
    type(stage->window, "50");
    press(tab, shift);
    type(stage->window, "99");
    press(enter);
    EXPECT_EQ(stage->installed(),
              std::vector{rule(onLoad(), send(controlChange(0, 0, 99), 250), "Message #1")});
}

TEST_F(KeyboardOnly, ARuleIsRenamedAndDeleted) {
    open({"a", "b"});
    tabTo("Message name");
    press(juce::KeyPress::F2Key);
    type(stage->window, "My name");
    press(enter);
    EXPECT_EQ(stage->names(), (Names{"My name", "b"}));
    tabTo("Delete");
    press(enter);
    EXPECT_EQ(stage->names(), (Names{"b"}));
}

TEST_F(KeyboardOnly, AFieldKeepsTheFocusWhileOthersComeAndGoAroundIt) {
    open({"a"});
    tabTo("Type");
    press(enter);
    stage->pickInMenu("CC");
    EXPECT_EQ(stage->entry(0).trigger.type, TriggerEntryType::ControlChange);
    EXPECT_EQ(EditorStage::focus(), "Type");
    press(tab);
    EXPECT_EQ(EditorStage::focus(), "Ch");
}

TEST_F(KeyboardOnly, WhereAFieldGoesTheOneInItsPlaceHasTheFocus) {
    open({"a"});
    tabTo("Velocity");
    stage->editor().changeOutputType({stage->id(0)}, OutputEntryType::ControlChange);
    EXPECT_EQ(EditorStage::focus(), "Value");
    tabTo("Delay (ms)");
    stage->editor().changeOutputType({stage->id(0)}, OutputEntryType::SystemExclusive);
    EXPECT_EQ(EditorStage::focus(), "Delay (ms)");
    stage->editor().undo();
    press(tab, shift);
    stage->editor().redo();
    EXPECT_EQ(EditorStage::focus(), "Delay (ms)");
}

TEST_F(KeyboardOnly, RulesThatTheHostBringsInLeaveTheKeyboardToTheHost) {
    const auto bringIn = [this](const PluginData& rules) {
        ASSERT_EQ(stage->desk.session().restore(rules.write()), std::nullopt);
        stage->desk.drain();
        EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr) << EditorStage::focus();
        EXPECT_FALSE(stage->press(enter));
    };
    const PluginData other{{rule(onLoad(), send(noteOn(0, 60, 100)), "other")}};
    for (const auto& rules : {PluginData(), other}) {
        open({"a"});
        stage->beginTyping(stage->card().header(), "b");
        bringIn(rules);
        EXPECT_EQ(stage->installed(), rules.rules);
        open({"a"});
        handleOf(stage->card()).grabKeyboardFocus();
        bringIn(rules);
    }
}

TEST_F(KeyboardOnly, ACardThatGoesLeavesTheKeyboardToTheHost) {
    const auto expectLeft = [this](std::size_t cards) {
        settle();
        EXPECT_EQ(stage->names().size(), cards);
        EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr) << EditorStage::focus();
    };
    open({"a", "b"});
    stage->editor().duplicate({stage->id(1)});
    handleOf(stage->card(2)).grabKeyboardFocus();
    press('z', ctrl);
    expectLeft(2);
    stage->editor().remove({stage->id(1)});
    stage->editor().undo();
    handleOf(stage->card(1)).grabKeyboardFocus();
    press('y', ctrl);
    expectLeft(1);
    handleOf(stage->card(0)).grabKeyboardFocus();
    stage->editor().replaceAll({{UUID(), RuleEntry()}, {UUID(), RuleEntry()}}, "Import");
    expectLeft(2);
    click(handleOf(stage->card(0)));
    click(handleOf(stage->card(1)), {5, 20}, 1, shift);
    stage->editor().add(MIDIRuleType::OutputType{OutputEntryType::NoteOn});
    click(stage->card(0).buttons().deleteButton());
    expectLeft(1);
}

TEST_F(KeyboardOnly, AfterAFieldWasLetGoTabGoesOnBesideIt) {
    open({"a"});
    tabTo("Velocity");
    press('5');
    press(enter);
    EXPECT_EQ(EditorStage::focus(), "");
    press(tab);
    EXPECT_EQ(EditorStage::focus(), "Delay (ms)");
    press(enter);
    press(enter);
    press(tab, shift);
    EXPECT_EQ(EditorStage::focus(), "Velocity");
}

TEST_F(KeyboardOnly, AfterDeleteTheNeighbourHasTheFocusAndAfterTheLastRuleTheWayToAddOne) {
    open({"a", "b", "c"});
    tabTo("Delete");
    press(enter);
    EXPECT_TRUE(stage->card(0).buttons().deleteButton().hasKeyboardFocus(false));
    EXPECT_EQ(stage->names(), (Names{"b", "c"}));
    stage->card(1).buttons().deleteButton().grabKeyboardFocus();
    press(enter);
    EXPECT_TRUE(stage->card(0).buttons().deleteButton().hasKeyboardFocus(false));
    press(enter);
    EXPECT_TRUE(stage->names().empty());
    EXPECT_EQ(EditorStage::focus(), "Add new");
}

TEST_F(KeyboardOnly, AfterDeleteANeighbourInOneLineHasTheFocusOnItsGrip) {
    open({"a", "b"});
    handleOf(stage->card(1)).grabKeyboardFocus();
    press(enter);
    stage->card(0).buttons().deleteButton().grabKeyboardFocus();
    press(enter);
    EXPECT_EQ(stage->names(), (Names{"b"}));
    EXPECT_TRUE(handleOf(stage->card(0)).hasKeyboardFocus(false));
}

TEST_F(KeyboardOnly, DeletedByAClickARuleLeavesTheKeyboardToTheHost) {
    open({"a", "b"});
    tabTo("Velocity");
    click(stage->card(0).buttons().deleteButton());
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr);
}

TEST_F(KeyboardOnly, TheMenuOfACardIsReachedAndWorks) {
    open({"a"});
    for (const auto width : {820, 500, 240}) {
        stage->view().setSize(width, 400);
        juce::Component::unfocusAllComponents();
        tabTo("Duplicate");
        tabTo("More");
        EXPECT_TRUE(stage->card(0).buttons().moreButton().hasKeyboardFocus(false)) << width;
    }
    auto waiting = stage->entry(0);
    waiting.trigger.type = TriggerEntryType::NoteOn;
    stage->editor().edit({stage->id(0)}, waiting);
    press(enter);
    stage->pickInMenu("Duplicate as Note Off");
    EXPECT_EQ(stage->names(), (Names{"a", "a"}));
}

TEST_F(KeyboardOnly, TabInAMenuThatLostTheFocusGivesItBack) {
    open();
    tabTo("Add new");
    press(enter);
    juce::Component::unfocusAllComponents();
    press(tab);
    EXPECT_TRUE(stage->menu().hasKeyboardFocus(true));
}

}  // namespace
}  // namespace quillo
