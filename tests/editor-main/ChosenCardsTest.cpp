// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ChosenCards.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "editor-main/EditorStage.hpp"
#include "editor/AlertView.hpp"
#include "editor/JuceText.hpp"
#include "editor/PresetExchange.hpp"
#include "support/Pictures.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Names = std::vector<std::string>;

Rule named(const std::string& name) {
    return rule(onNoteOn(), send(noteOn(0, 60, 100)), name);
}

/// Cards of these names, and a clipboard that is no other program's.
class ChosenCardsTest : public testing::Test {
protected:
    void openRules(std::vector<Rule> rules) {
        stage.emplace(std::move(rules), juce::Point<int>{820, 900});
        stage->view().chosenCards().setClipboard(
            {[this](const juce::String& text) { clipboard = text; }, [this] { return clipboard; }});
    }
    void open(const Names& names) {
        std::vector<Rule> rules;
        for (const auto& name : names) {
            rules.push_back(named(name));
        }
        openRules(std::move(rules));
    }

    void choose(std::size_t position, juce::ModifierKeys modifiers = {}) {
        click(handleOf(stage->card(position)), {5, 20}, 1, modifiers);
    }
    bool press(int code, juce::ModifierKeys modifiers = {}) { return stage->press(code, modifiers); }

    std::optional<EditorStage> stage;
    juce::String clipboard;
};

TEST_F(ChosenCardsTest, TheSwitchOfACardSwitchesItsRuleOffAndOn) {
    open({"a", "b"});
    auto& card = stage->card(0);
    EXPECT_TRUE(card.onOffSwitch().isOn());
    EXPECT_EQ(card.onOffSwitch().getTitle(), "On");
    click(card.onOffSwitch());
    EXPECT_EQ(stage->names(), Names{"b"});
    EXPECT_FALSE(card.onOffSwitch().isOn());
    EXPECT_LT(card.trigger().getAlpha(), 1.0F);
    EXPECT_EQ(card.status().remark().words, "off");
    EXPECT_EQ(stage->editor().undoName(), "Switch off a");
    card.onOffSwitch().grabKeyboardFocus();
    EXPECT_TRUE(press(juce::KeyPress::spaceKey));
    EXPECT_EQ(stage->names(), (Names{"a", "b"}));
    EXPECT_EQ(card.trigger().getAlpha(), 1.0F);
    EXPECT_EQ(card.status().remark().words, "never fired since load");
}

TEST_F(ChosenCardsTest, ARuleThatIsOffDoesNotFireAndItsCardCanBeEdited) {
    open({"a", "b"});
    click(stage->card(0).onOffSwitch());
    stage->render({{0x90, 1, 1}});
    EXPECT_EQ(stage->sent.size(), 2U) << "What came in goes on, and b fires.";
    EXPECT_EQ(stage->card(0).status().remark().words, "off");
    stage->typeInto(stage->card(0).header(), "x");
    EXPECT_EQ(stage->editor().rules()[0].rule.name, "x");
    EXPECT_TRUE(stage->editor().rules()[0].off);
}

TEST_F(ChosenCardsTest, ButtonsAndSwitchesOfAChosenCardAreForAllThatAreChosen) {
    open({"a", "b", "c", "d"});
    choose(0);
    choose(2, ctrl);
    click(stage->card(2).onOffSwitch());
    EXPECT_EQ(stage->names(), (Names{"b", "d"}));
    EXPECT_EQ(stage->editor().undoName(), "Switch off a (2 rules)");
    click(stage->card(0).onOffSwitch());
    click(stage->card(0).buttons().duplicateButton());
    EXPECT_EQ(stage->names(), (Names{"a", "b", "c", "a", "c", "d"}));
    click(stage->card(0).buttons().deleteButton());
    EXPECT_EQ(stage->names(), (Names{"b", "a", "c", "d"}));
    EXPECT_EQ(stage->editor().undoName(), "Delete a (2 rules)");
}

TEST_F(ChosenCardsTest, HaveALineAroundThemAlsoAfterTheyWereOutOfSight) {
    open(Names(50, "a"));
    const auto hasLine = [this](std::size_t position) {
        auto& card = stage->card(position);
        const auto colour = Palette().channelInput;
        return pixelsLike(picture(card), colour, card.getLocalBounds().withHeight(3)) > card.getWidth();
    };
    EXPECT_FALSE(hasLine(0));
    choose(0);
    EXPECT_TRUE(hasLine(0));
    juce::Component::unfocusAllComponents();
    EXPECT_FALSE(hasLine(49));
    ASSERT_EQ(stage->view().card(stage->id(0)), nullptr);
    EXPECT_TRUE(hasLine(0));
}

TEST_F(ChosenCardsTest, ButtonsOfACardThatIsNotChosenAreForItAlone) {
    open({"a", "b", "c"});
    choose(0);
    choose(1, shift);
    click(stage->card(2).buttons().deleteButton());
    EXPECT_EQ(stage->names(), (Names{"a", "b"}));
}

TEST_F(ChosenCardsTest, AnotherChannelIsForAllThatAreChosenAndOtherFieldsAreNot) {
    open({"a", "b", "c"});
    choose(0);
    choose(1, shift);
    stage->typeInto(field(stage->card(1).output(), "Ch"), "7");
    EXPECT_EQ(stage->entry(0).output.channel, channel(6));
    EXPECT_EQ(stage->entry(1).output.channel, channel(6));
    EXPECT_EQ(stage->entry(2).output.channel, channel(0));
    EXPECT_EQ(stage->editor().undoName(), "Edit a (2 rules)");
    stage->typeInto(field(stage->card(1).output(), "Delay (ms)"), "9");
    EXPECT_EQ(stage->entry(0).output.delay.ms, 0);
    EXPECT_EQ(stage->entry(1).output.delay.ms, 9);
}

TEST_F(ChosenCardsTest, ARuleThatIsSwitchedOnAgainHasKeptItsHits) {
    open({"a", "b"});
    stage->render({{0x90, 1, 1}});
    click(stage->card(0).onOffSwitch());
    click(stage->card(0).onOffSwitch());
    stage->desk.drain();
    stage->view().advance(0);
    EXPECT_EQ(stage->card(0).status().remark().words, juceText("1 × · now"));
}

TEST_F(ChosenCardsTest, KeysMoveThemTogether) {
    open({"a", "b", "c", "d"});
    choose(0);
    choose(1, shift);
    EXPECT_TRUE(press(juce::KeyPress::downKey, ctrl));
    EXPECT_EQ(stage->names(), (Names{"c", "a", "b", "d"}));
    EXPECT_EQ(stage->editor().undoName(), "Move a (2 rules)");
    EXPECT_TRUE(press(juce::KeyPress::upKey, ctrl));
    EXPECT_EQ(stage->names(), (Names{"a", "b", "c", "d"}));
}

TEST_F(ChosenCardsTest, DeleteOnAGripDeletesThemAndTheNextGripHasTheKeyboard) {
    open({"a", "b", "c"});
    choose(0);
    EXPECT_TRUE(press(juce::KeyPress::downKey, shift));
    EXPECT_TRUE(press(juce::KeyPress::deleteKey));
    EXPECT_EQ(stage->names(), Names{"c"});
    EXPECT_TRUE(handleOf(stage->card(0)).hasKeyboardFocus(false));
    EXPECT_TRUE(clipboard.isEmpty());
}

TEST_F(ChosenCardsTest, AreNotDeletedOutOfSightButBroughtIntoSight) {
    open({"a", "b", "c", "d"});
    stage->view().setSize(500, 250);
    auto& list = stage->view().list();
    choose(0);
    settle();
    for (const auto& [code, modifiers] :
         {std::pair(juce::KeyPress::deleteKey, juce::ModifierKeys()),
          std::pair(juce::KeyPress::backspaceKey, juce::ModifierKeys()), std::pair(int{'x'}, ctrl)}) {
        list.setScrollPosition(100'000);
        EXPECT_TRUE(press(code, modifiers));
        EXPECT_LT(list.scrollPosition(), 200);
        EXPECT_EQ(stage->names(), (Names{"a", "b", "c", "d"})) << code;
    }
    EXPECT_TRUE(clipboard.isEmpty());
    EXPECT_TRUE(press(juce::KeyPress::deleteKey));
    EXPECT_EQ(stage->names(), (Names{"b", "c", "d"}));
}

TEST_F(ChosenCardsTest, AreDeletedWhereTheyAreHigherThanTheList) {
    open({"a", "b"});
    stage->view().setSize(200, 200);
    choose(0);
    settle();
    EXPECT_TRUE(press(juce::KeyPress::deleteKey));
    EXPECT_EQ(stage->names(), Names{"b"});
}

TEST_F(ChosenCardsTest, AreCopiedAsAPresetAndPastedBehindTheCardWithTheFocus) {
    open({"a", "b", "c"});
    choose(0);
    choose(1, shift);
    EXPECT_TRUE(press('c', ctrl));
    EXPECT_EQ(clipboard.toStdString(), textOfRules(stage->editor(), {stage->id(0), stage->id(1)}));
    handleOf(stage->card(2)).grabKeyboardFocus();
    EXPECT_TRUE(press('v', ctrl));
    EXPECT_EQ(stage->names(), (Names{"a", "b", "c", "a", "b"}));
    EXPECT_EQ(stage->view().list().selection().chosen(), (std::vector{stage->id(3), stage->id(4)}));
    EXPECT_TRUE(handleOf(stage->card(3)).hasKeyboardFocus(false));
    EXPECT_EQ(stage->editor().undoName(), "Paste a (2 rules)");
}

TEST_F(ChosenCardsTest, AreCutWhenTheyHaveBeenCopied) {
    open({"a", "b", "c"});
    choose(1);
    EXPECT_TRUE(press('x', ctrl));
    EXPECT_EQ(stage->names(), (Names{"a", "c"}));
    EXPECT_EQ(stage->editor().undoName(), "Cut b");
    EXPECT_TRUE(press('v', ctrl));
    EXPECT_EQ(stage->names(), (Names{"a", "c", "b"}));
}

TEST_F(ChosenCardsTest, AllThatHaveBeenCutArePastedAgain) {
    open({"a", "b", "c"});
    choose(1);
    EXPECT_TRUE(press('a', ctrl));
    EXPECT_TRUE(press('x', ctrl));
    EXPECT_EQ(stage->names(), Names{});
    EXPECT_EQ(EditorStage::focus(), "Add new");
    EXPECT_TRUE(press('v', ctrl));
    EXPECT_EQ(stage->names(), (Names{"a", "b", "c"}));
}

TEST_F(ChosenCardsTest, OnlyWhatWasPastedIsChosenAlsoWhereOthersWereNotShown) {
    const auto pedal = rule(onControlChange(64), send(noteOn(0, 1, 1)), "pedal");
    openRules({named("a"), pedal, named("b")});
    choose(0);
    press('c', ctrl);
    juce::Component::unfocusAllComponents();
    click(stage->view().header().playingButton());
    stage->render({{0xB0, 64, 1}});
    stage->view().advance(0);
    ASSERT_EQ(stage->view().list().items(), std::vector{stage->id(1)});
    choose(1);
    EXPECT_TRUE(press('v', ctrl));
    EXPECT_EQ(stage->names(), (Names{"a", "pedal", "a", "b"}));
    EXPECT_EQ(stage->view().list().selection().chosen(), std::vector{stage->id(2)});
}

TEST_F(ChosenCardsTest, WhatMustBeKnownOfAPastedRuleKeepsTheKeyboard) {
    open({"a"});
    const auto old = rule(onLoad(), send(protocol(StatusV2::programChange, channel(3), byte(9))), "old");
    const auto bytes = PluginData{{old}}.write();
    clipboard = juceText(std::string(bytes.begin(), bytes.end()));
    choose(0);
    EXPECT_TRUE(press('v', ctrl));
    EXPECT_EQ(stage->names(), (Names{"a", "old"}));
    auto* alert = findBelow<AlertView>(stage->view());
    ASSERT_NE(alert, nullptr);
    EXPECT_TRUE(alert->hasKeyboardFocus(true));
}

TEST_F(ChosenCardsTest, AFoldedRunIsCopiedWhole) {
    std::vector<Rule> run;
    for (const std::uint8_t note : {std::uint8_t{36}, std::uint8_t{37}, std::uint8_t{38}}) {
        run.push_back(rule(onNoteOn(exactly(note)), send(noteOn(1, 60, 100)), "split"));
    }
    openRules(run);
    ASSERT_EQ(stage->view().list().items().size(), 1U);
    choose(0);
    EXPECT_TRUE(press('c', ctrl));
    EXPECT_TRUE(press('v', ctrl));
    EXPECT_EQ(stage->names().size(), 6U);
    EXPECT_EQ(stage->view().list().items().size(), 2U);
}

TEST_F(ChosenCardsTest, ATextThatIsNoPresetIsRefusedInAnAlert) {
    open({"a"});
    clipboard = "see you at eight";
    choose(0);
    EXPECT_TRUE(press('v', ctrl));
    EXPECT_EQ(stage->names(), Names{"a"});
    EXPECT_NE(findBelow<AlertView>(stage->view()), nullptr);
}

TEST_F(ChosenCardsTest, OfAPresetWithoutRulesItIsSaidThatNothingIsPasted) {
    open({"a"});
    const auto bytes = PluginData{}.write();
    clipboard = juceText(std::string(bytes.begin(), bytes.end()));
    choose(0);
    EXPECT_TRUE(press('v', ctrl));
    EXPECT_EQ(stage->names(), Names{"a"});
    EXPECT_EQ(stage->editor().alertErrorMessage(),
              "What the clipboard holds cannot be pasted. It holds no rule.\n"
              "The rules are as they were. Copy cards, or the text of a preset.");
}

TEST_F(ChosenCardsTest, WithoutACardThatHasTheKeyboardTheKeysAreTheHosts) {
    open({"a"});
    clipboard = juceText(textOfRules(stage->editor(), {stage->id(0)}));
    for (const int code : {int{'c'}, int{'x'}, int{'v'}, int{juce::KeyPress::deleteKey}}) {
        EXPECT_FALSE(press(code, code == juce::KeyPress::deleteKey ? juce::ModifierKeys() : ctrl)) << code;
    }
    EXPECT_EQ(stage->names(), Names{"a"});
}

TEST_F(ChosenCardsTest, InATextFieldTheKeysAreForItsText) {
    open({"a", "b"});
    choose(0);
    stage->beginTyping(stage->card(0).header(), "name");
    press('x', ctrl);
    press(juce::KeyPress::deleteKey);
    EXPECT_EQ(stage->names(), (Names{"a", "b"}));
}

}  // namespace
}  // namespace quillo
