// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>

#include "editor-main/EditorStage.hpp"
#include "editor/JuceText.hpp"
#include "editor/RunOverlay.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Texts = std::vector<std::string>;

/// Waits for these notes on channel 1 and sends them, so much higher, on channel 2.
std::vector<Rule> split(std::uint8_t from, std::uint8_t to, std::uint8_t higher) {
    std::vector<Rule> rules;
    for (auto note = from; note <= to; ++note) {
        const auto sent = byte(static_cast<std::uint8_t>(note + higher));
        rules.push_back(rule(onNoteOn(exactly(note), exactly(0), eatMatching),
                             send(protocol(StatusV2::noteOn, channel(1), sent, byte(100))), "split"));
    }
    return rules;
}

/// The same Note Off for each of these values of a controller.
std::vector<Rule> upperHalf() {
    std::vector<Rule> rules;
    for (std::uint8_t value = 64; value <= 127; ++value) {
        rules.push_back(rule(onControlChange(64, exactly(value)), send(noteOn(0, 60, 0)), "down"));
    }
    return rules;
}

/// Sends each of the first so many values of a controller on, so much higher.
std::vector<Rule> higher(std::uint8_t count, std::uint8_t by) {
    std::vector<Rule> rules;
    for (std::uint8_t value = 0; value < count; ++value) {
        const auto sent = static_cast<std::uint8_t>(value + by);
        rules.push_back(rule(onControlChange(64, exactly(value)), send(controlChange(0, 7, sent)), "up"));
    }
    return rules;
}

class RunCardTest : public testing::Test {
protected:
    void open(std::vector<Rule> rules) { stage.emplace(std::move(rules)); }

    RunCardTest() { open(split(36, 47, 12)); }

    [[nodiscard]] RuleView& card(std::size_t position = 0) {
        const auto& id = stage->view().list().items().at(position);
        stage->view().list().scrollTo(id);
        return *stage->view().card(id);
    }
    [[nodiscard]] FieldView& waitsFor() { return field(card().trigger(), "Note"); }
    [[nodiscard]] FieldView& sends() { return field(card().output(), "Note"); }
    [[nodiscard]] std::size_t cards() { return stage->view().list().items().size(); }
    [[nodiscard]] RunOverlay& overlay() { return dynamic_cast<RunOverlay&>(*stage->view().overlay()); }
    /// Presses a key in the panel, which hears of what was typed a moment later.
    void press(int code) {
        key(stage->window, code);
        settle();
    }
    void typeInPanel(const juce::String& text) {
        type(stage->window, text);
        settle();
    }
    void pickMore(const juce::String& row) {
        click(card().buttons().moreButton());
        stage->pickInMenu(row);
    }

    std::optional<EditorStage> stage;
};

TEST_F(RunCardTest, ShowsTheRangeTheTranspositionAndHowManyRulesItHas) {
    EXPECT_EQ(cards(), 1);
    EXPECT_EQ(texts(card().trigger()), (Texts{"Note On", "1", "C1 – B1", "Consume matching"}));
    EXPECT_EQ(sends().shownText(), juce::String::fromUTF8("From Trigger + 12"));
    EXPECT_EQ(card().header().remark(), "12 rules");
    open(upperHalf());
    EXPECT_EQ(field(card().trigger(), "Value").shownText(), juce::String::fromUTF8("64 – 127"));
    open({split(36, 36, 12)});
    EXPECT_EQ(card().header().remark(), "Message name");
}

TEST_F(RunCardTest, IsMadeByTypingTheRangeIntoTheMenu) {
    open(split(60, 60, 0));
    stage->pick(waitsFor(), "c1-b1");
    EXPECT_EQ(cards(), 1);
    EXPECT_EQ(stage->installed().size(), 12);
    EXPECT_EQ(waitsFor().shownText(), juce::String::fromUTF8("C1 – B1"));
    stage->editor().undo();
    EXPECT_EQ(stage->installed(), split(60, 60, 0));
}

TEST_F(RunCardTest, IsMadeByRangeAtTheMenusEnd) {
    open(split(60, 60, 0));
    EditorStage::openMenu(waitsFor());
    key(stage->window, juce::KeyPress::endKey);
    key(stage->window, juce::KeyPress::returnKey);
    EXPECT_EQ(overlay().text(0).getText(), "C3");
    EXPECT_EQ(overlay().outcome().count, "1 rule");
    typeInPanel("c1");
    press(juce::KeyPress::tabKey);
    typeInPanel("b1");
    EXPECT_EQ(overlay().outcome().count, "12 rules");
    EXPECT_EQ(overlay().outcome().words, "Stored as 12 plain rules: every host plays them.");
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage->view().overlay(), nullptr);
    EXPECT_EQ(stage->installed().size(), 12);
}

TEST_F(RunCardTest, AClickBesideTheTextsOfItsPanelLeavesItTheKeyboard) {
    EditorStage::openMenu(waitsFor());
    stage->pickInMenu("range");
    click(overlay(), overlay().text(0).getBounds().getBottomLeft().translated(0, 6));
    ASSERT_NE(stage->view().overlay(), nullptr);
    EXPECT_TRUE(overlay().text(0).hasKeyboardFocus(false));
}

TEST_F(RunCardTest, IsNotMadeOfWhatIsNoRange) {
    EditorStage::openMenu(waitsFor());
    stage->pickInMenu("range");
    const auto before = stage->installed();
    typeInPanel("x");
    EXPECT_FALSE(overlay().setButton().isEnabled());
    EXPECT_EQ(overlay().outcome().words, "Notes read C1, C#1 or 36.");
    press(juce::KeyPress::returnKey);
    overlay().text(0).setText("c1");
    overlay().text(1).setText("g8");
    settle();
    EXPECT_EQ(overlay().outcome().words, "What is sent would leave 0 to 127.");
    press(juce::KeyPress::escapeKey);
    EXPECT_EQ(stage->view().overlay(), nullptr);
    EXPECT_EQ(stage->installed(), before);
    EXPECT_FALSE(stage->offers(waitsFor(), "c1-g8"));
}

TEST_F(RunCardTest, OfACardThatWaitsForAnyNoteBeginsWithAllOfThem) {
    open({rule(onNoteOn(), send(noteOn(0, 60, 0)))});
    EditorStage::openMenu(waitsFor());
    stage->pickInMenu("range");
    click(overlay().setButton());
    EXPECT_EQ(stage->installed().size(), 128);
    EXPECT_EQ(cards(), 1);
}

TEST_F(RunCardTest, IsNotOfferedWhereTheRuleConsumesWhatDoesNotMatch) {
    EXPECT_FALSE(stage->offers(field(card().trigger(), "Incoming"), "Consume non"));
    open({rule(onNoteOn(exactly(60), any, PassThroughV2::EatNonMatching), send(noteOn(0, 60, 0)))});
    EXPECT_FALSE(stage->offers(waitsFor(), "range"));
    EXPECT_FALSE(stage->offers(waitsFor(), "c1-b1"));
    EXPECT_TRUE(stage->offers(field(card().trigger(), "Incoming"), "Consume non"));
    stage->pick(field(card().trigger(), "Incoming"), "Pass");
    EXPECT_TRUE(stage->offers(waitsFor(), "range"));
}

TEST_F(RunCardTest, IsTransposedByWhatIsTypedIntoTheMessagesMenu) {
    stage->pick(sends(), "-5");
    EXPECT_EQ(sends().shownText(), juce::String::fromUTF8("From Trigger − 5"));
    EXPECT_EQ(stage->entry(11).output.note, byte(42));
    EXPECT_EQ(stage->editor().undoName(), "Edit split (12 rules)");
    EXPECT_FALSE(stage->offers(sends(), "+100"));
}

TEST_F(RunCardTest, IsTransposedInAPanel) {
    EditorStage::openMenu(sends());
    stage->pickInMenu(juce::String::fromUTF8("From Trigger + …"));
    EXPECT_EQ(overlay().text(0).getText(), "+12");
    typeInPanel("7");
    EXPECT_EQ(overlay().outcome().words, juce::String::fromUTF8("Sends G1 – F♯2 for C1 – B1."));
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage->entry(0).output.note, byte(43));
}

TEST_F(RunCardTest, SendsOneNoteForAllWhenThatIsPicked) {
    stage->pick(sends(), "48 (");
    EXPECT_EQ(stage->entry(11).output.note, byte(48));
    EXPECT_EQ(sends().shownText(), "48 (C2)");
    stage->pick(sends(), "from trigger");
    EXPECT_EQ(stage->entry(11).output.note, triggerByte);
}

TEST_F(RunCardTest, SendsZeroForAllWhenAShortcutIsPicked) {
    const auto throughTo = [](std::uint8_t controller, std::uint8_t greatest) {
        std::vector<Rule> rules;
        for (std::uint8_t value = 0; value < 3; ++value) {
            rules.push_back(rule(onControlChange(64, exactly(value)),
                                 send(controlChange(0, controller, std::min(value, greatest))), "through"));
        }
        return rules;
    };
    open(throughTo(7, 127));
    ASSERT_EQ(field(card().output(), "Value").shownText(), juceText("From Trigger + 0"));
    stage->pick(field(card().output(), "Type"), "All Notes Off");
    EXPECT_EQ(stage->installed(), throughTo(123, 0));
    EXPECT_EQ(cards(), 1U);
}

TEST_F(RunCardTest, OfASingleRuleOffersNoTransposition) {
    open(split(60, 60, 0));
    EXPECT_FALSE(stage->offers(sends(), "+12"));
    EXPECT_FALSE(stage->offers(sends(), juce::String::fromUTF8("trigger + …")));
}

TEST_F(RunCardTest, ChangesEachRuleWithEachField) {
    stage->typeInto(field(card().output(), "Delay (ms)"), "300");
    stage->pick(field(card().trigger(), "Ch"), "4");
    stage->typeInto(card().header(), "lead");
    for (std::size_t rule = 0; rule < 12; ++rule) {
        EXPECT_EQ(stage->entry(rule).output.delay.ms, 300);
        EXPECT_EQ(stage->entry(rule).trigger.channel, exactly(3));
        EXPECT_EQ(stage->entry(rule).name, "lead");
        EXPECT_EQ(stage->entry(rule).output.note, byte(static_cast<std::uint8_t>(48 + rule)));
    }
    EXPECT_EQ(cards(), 1);
    for (int step = 0; step < 3; ++step) {
        stage->editor().undo();
    }
    EXPECT_EQ(stage->installed(), split(36, 47, 12));
}

TEST_F(RunCardTest, OfValuesIsTypedIntoTheFieldAndNotStepped) {
    open({rule(onControlChange(64), send(noteOn(0, 60, 0)), "down")});
    stage->typeInto(field(card().trigger(), "Value"), "64-127");
    EXPECT_EQ(stage->installed(), upperHalf());
    field(card().trigger(), "Value").grabKeyboardFocus();
    key(stage->window, juce::KeyPress::upKey);
    EXPECT_EQ(stage->installed(), upperHalf());
    stage->typeInto(field(card().trigger(), "Value"), "5");
    EXPECT_EQ(stage->installed().size(), 1);
    EXPECT_EQ(stage->entry(0).trigger.controllerValue, exactly(5));
}

class ARangeBeingTyped : public RunCardTest {
protected:
    ARangeBeingTyped() { beginTyping(); }
    void beginTyping() {
        open({rule(onControlChange(64), send(noteOn(0, 60, 0)), "down")});
        stage->beginTyping(value(), "64-127");
    }
    [[nodiscard]] FieldView& value() { return field(card().trigger(), "Value"); }
};

TEST_F(ARangeBeingTyped, IsTakenByAPickerThatIsClickedBeforeItsMenuOpens) {
    for (const auto* picker : {"Type", "Ch", "Controller", "Incoming"}) {
        beginTyping();
        EditorStage::openMenu(field(card().trigger(), picker));
        EXPECT_EQ(stage->menu().getTitle(), picker);
        EXPECT_EQ(stage->installed(), upperHalf()) << picker;
    }
}

TEST_F(ARangeBeingTyped, IsTakenBeforeItsOwnMenuOpens) {
    EditorStage::openMenu(value());
    EXPECT_EQ(stage->menu().getTitle(), "Value");
    EXPECT_EQ(stage->installed(), upperHalf());
    beginTyping();
    key(stage->window,
        juce::KeyPress(juce::KeyPress::downKey, juce::ModifierKeys(juce::ModifierKeys::altModifier), 0));
    EXPECT_EQ(stage->menu().getTitle(), "Value");
    EXPECT_EQ(stage->installed(), upperHalf());
}

TEST_F(ARangeBeingTyped, IsTakenByTheNextFieldThatIsTypedInto) {
    stage->typeInto(field(card().output(), "Velocity"), "5");
    ASSERT_EQ(stage->installed().size(), 64U);
    EXPECT_EQ(stage->entry(63).output.velocity, byte(5));
}

TEST_F(ARangeBeingTyped, IsTakenByTheWheelWhichDoesNotStepIt) {
    wheel(value(), value().textArea().getCentre(), 0.4F);
    EXPECT_EQ(stage->installed(), upperHalf());
}

TEST_F(ARangeBeingTyped, IsEndedByReturnWhichLetsTheFieldGo) {
    press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage->installed(), upperHalf());
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr);
}

TEST_F(ARangeBeingTyped, IsTakenByTabWhichGoesOnToTheNextField) {
    press(juce::KeyPress::tabKey);
    EXPECT_EQ(stage->installed(), upperHalf());
    EXPECT_EQ(EditorStage::focus(), "Incoming");
    EXPECT_FALSE(stage->offers(field(card().trigger(), "Incoming"), "Consume non"));
}

TEST_F(ARangeBeingTyped, IsTakenBeforeTheNextFieldSaysWhatIsTypedOver) {
    open(higher(2, 12));
    stage->beginTyping(value(), "5");
    auto& sent = dynamic_cast<MyTextInputImpl&>(field(card().output(), "Value"));
    click(sent, sent.textArea().getCentre());
    EXPECT_EQ(sent.typist()->getText(), "12");
}

TEST_F(RunCardTest, OpensNoMenuThatHasGoneWithTheRangeThatWasTypedOver) {
    std::vector<Rule> rules;
    for (std::uint8_t program = 0; program < 12; ++program) {
        const auto sent = static_cast<std::uint8_t>(program + 12);
        rules.push_back(rule(onProgramChange(exactly(program)), send(controlChange(0, 7, sent)), "up"));
    }
    open(rules);
    ASSERT_EQ(cards(), 1U);
    stage->beginTyping(field(card().trigger(), "Program"), "5");
    EditorStage::openMenu(field(card().output(), "Value"));
    EXPECT_EQ(stage->installed().size(), 1U);
    EXPECT_EQ(stage->view().overlay(), nullptr);
}

TEST_F(RunCardTest, OneRuleWaitsForAnyWhenWhatIsTypedIsNoNumber) {
    open(higher(1, 64));
    stage->typeInto(field(card().trigger(), "Value"), "-5");
    EXPECT_EQ(field(card().trigger(), "Value").shownText(), "Any");
}

/// With which the message would leave 0 to 127.
TEST_F(RunCardTest, StaysAsItIsWhenARangeOrADistanceIsTypedThatCannotBe) {
    const auto rules = higher(64, 64);
    open(rules);
    ASSERT_EQ(cards(), 1U);
    for (const auto* range : {"0-127", "0-200", "-5"}) {
        stage->typeInto(field(card().trigger(), "Value"), range);
        EXPECT_EQ(stage->installed(), rules) << range;
    }
    for (const auto* distance : {"+100", "+200", "5-"}) {
        stage->typeInto(field(card().output(), "Value"), distance);
        EXPECT_EQ(stage->installed(), rules) << distance;
    }
}

TEST_F(RunCardTest, BecomesOneRuleWhenItIsToWaitForAny) {
    stage->pick(waitsFor(), "Any");
    EXPECT_EQ(stage->installed().size(), 1);
    EXPECT_EQ(waitsFor().shownText(), "Any");
    stage->editor().undo();
    EXPECT_EQ(cards(), 1);
    EXPECT_EQ(stage->installed(), split(36, 47, 12));
}

TEST_F(RunCardTest, IsSentByHandOnlyWhereAllRulesSendTheSame) {
    EXPECT_FALSE(card().buttons().sendButton().isEnabled());
    EXPECT_EQ(card().buttons().sendButton().getTooltip(),
              "Each rule of this card sends another message, so they cannot be sent by hand");
    open(upperHalf());
    EXPECT_TRUE(card().buttons().sendButton().isEnabled());
    click(card().buttons().sendButton());
    stage->render();
    EXPECT_EQ(stage->sent, (std::vector<std::vector<std::uint8_t>>{{0x90, 60, 0}}));
}

TEST_F(RunCardTest, IsDuplicatedMovedAndDeletedAsOne) {
    auto rules = split(36, 47, 12);
    rules.push_back(rule(onLoad(), send(noteOn(0, 60, 0)), "single"));
    open(rules);
    click(card().buttons().duplicateButton());
    EXPECT_EQ(cards(), 3);
    stage->view().list().moveBy(stage->view().list().items()[0], 2);
    EXPECT_EQ(stage->names()[12], "single");
    EXPECT_EQ(cards(), 3);
    stage->view().list().moveBy(stage->view().list().items()[1], -1);
    EXPECT_EQ(stage->names()[0], "single");
    click(card(1).buttons().deleteButton());
    EXPECT_EQ(cards(), 2);
    EXPECT_EQ(stage->installed().size(), 13);
}

TEST_F(RunCardTest, IsUnfoldedAndFoldedByItsMenu) {
    pickMore("Unfold");
    EXPECT_EQ(cards(), 12);
    EXPECT_EQ(waitsFor().shownText(), "36 (C1)");
    EXPECT_FALSE(stage->editor().undoName());
    click(card(3).buttons().moreButton());
    stage->pickInMenu("Fold");
    EXPECT_EQ(cards(), 1);
    EXPECT_EQ(waitsFor().shownText(), juce::String::fromUTF8("C1 – B1"));
}

TEST_F(RunCardTest, ThatIsFoldedLeavesTheKeyboardOfTheCardsThatGoToTheHost) {
    pickMore("Unfold");
    handleOf(card(3)).grabKeyboardFocus();
    pickMore("Fold");
    settle();
    EXPECT_EQ(cards(), 1);
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr) << EditorStage::focus();
}

TEST_F(RunCardTest, ThatTheHostHasReplacedMeanwhileIsNotUnfoldedByItsMenu) {
    click(card().buttons().moreButton());
    ASSERT_EQ(stage->desk.session().restore(PluginData{upperHalf()}.write()), std::nullopt);
    stage->desk.drain();
    stage->pickInMenu("Unfold");
    EXPECT_EQ(stage->installed(), upperHalf());
    EXPECT_EQ(cards(), 1U);
}

TEST_F(RunCardTest, OfNotesGetsATwinForNoteOff) {
    pickMore("Make the Note Off too");
    EXPECT_EQ(cards(), 2);
    EXPECT_EQ(texts(card(1).trigger()), (Texts{"Note Off", "1", "C1 – B1", "Consume matching"}));
    EXPECT_EQ(texts(card(1).output()), (Texts{"Note Off", "2", "From Trigger + 12", "100", "0"}));
    open(split(60, 60, 0));
    pickMore("Duplicate as Note Off");
    EXPECT_EQ(stage->installed().size(), 2);
    click(card(1).buttons().moreButton());
    type(stage->window, "Duplicate as");
    key(stage->window, juce::KeyPress::returnKey);
    EXPECT_EQ(stage->installed().size(), 2) << "the twin of a Note Off is not offered";
}

TEST_F(RunCardTest, CountsTheHitsOfAllItsRules) {
    stage->render({{0x90, 36, 1}, {0x90, 47, 1}, {0x90, 47, 1}, {0x90, 48, 1}});
    stage->view().advance(0);
    EXPECT_TRUE(card().status().remark().words.startsWith(juce::String::fromUTF8("3 ×")))
        << card().status().remark().words;
    EXPECT_TRUE(card().isLit());
}

/// Each line is a step: something chosen in a menu, or typed.
class Steps : public RunCardTest {
protected:
    Steps() { open({}); }
    void addNotesAsPlayed() {
        click(findBelow<NewRuleSelector>(stage->view())->button());
        stage->pickInMenu("Notes as played");
    }
};

TEST_F(Steps, FourTurnC3IntoD3OnAllChannels) {
    addNotesAsPlayed();
    stage->pick(waitsFor(), "60 (");
    stage->pick(sends(), "62 (");
    pickMore("Duplicate as Note Off");
    stage->render({{0x93, 60, 100}, {0x83, 60, 1}, {0x90, 61, 2}});
    EXPECT_EQ(stage->sent,
              (std::vector<std::vector<std::uint8_t>>{{0x93, 62, 100}, {0x83, 62, 1}, {0x90, 61, 2}}));
}

TEST_F(Steps, FiveMakeASplitWithTransposition) {
    addNotesAsPlayed();
    stage->pick(waitsFor(), "c1-b1");
    stage->pick(sends(), "+12");
    stage->pick(field(card().output(), "Ch"), "2");
    pickMore("Make the Note Off too");
    stage->render({{0x90, 36, 100}, {0x80, 36, 1}, {0x90, 48, 2}});
    EXPECT_EQ(stage->sent,
              (std::vector<std::vector<std::uint8_t>>{{0x91, 48, 100}, {0x81, 48, 1}, {0x90, 48, 2}}));
}

TEST_F(Steps, FourMakeAnEchoWithItsNoteOff) {
    addNotesAsPlayed();
    stage->pick(field(card().trigger(), "Incoming"), "Pass");
    stage->typeInto(field(card().output(), "Delay (ms)"), "300");
    pickMore("Duplicate as Note Off");
    EXPECT_EQ(
        stage->installed(),
        (std::vector{rule(onNoteOn(),
                          send(protocol(StatusV2::noteOn, triggerChannel, triggerByte, triggerByte), 300),
                          "Message #1"),
                     rule(onNoteOff(),
                          send(protocol(StatusV2::noteOff, triggerChannel, triggerByte, triggerByte), 300),
                          "Message #1")}));
}

TEST_F(RunCardTest, MovesAsOneWhenItIsImported) {
    EXPECT_EQ(stage->view().list().items(), (std::vector{stage->id(0)}));
    auto again = stage->editor().rules();
    for (auto& element : again) {
        element.id = UUID();
    }
    ASSERT_TRUE(stage->editor().replaceAll(again, "Import"));
    EXPECT_EQ(stage->view().list().items(), (std::vector{again.front().id}));
}

}  // namespace
}  // namespace quillo
