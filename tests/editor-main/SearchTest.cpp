// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>

#include "editor-main/EditorStage.hpp"
#include "editor/JuceText.hpp"
#include "editor/MyDragAndDropForEachDragHandle.hpp"
#include "editor/Style.hpp"
#include "programs/editor/DemoRules.hpp"
#include "support/Pictures.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

/// "Bass split" (note-on, channel 1), "Pedal brings strings" (CC 64), "Echo" (note-on, channel 2) and
/// "Silence at the stop" (the host's stop).
class Search : public testing::Test {
protected:
    void open(const juce::String& text) {
        stage.press('f', ctrl);
        type(stage.window, text);
    }

    std::vector<bool> faded() {
        std::vector<bool> faded;
        for (std::size_t position = 0; position < 4; ++position) {
            faded.push_back(stage.card(position).getAlpha() < 1);
        }
        return faded;
    }

    [[nodiscard]] static int marked(juce::Component& view) {
        return pixelsLike(picture(view), style::found, view.getLocalBounds());
    }
    SearchField& field() { return stage.view().header().searchField(); }
    static juce::Component& grip(RuleView& card) { return *findBelow<MyDragAndDropForEachDragHandle>(card); }

    EditorStage stage{performanceRules()};
};

TEST_F(Search, FadesTheCardsOnWhichNothingIsFound) {
    open("channel 2");
    EXPECT_EQ(faded(), (std::vector{false, true, false, true}));
    EXPECT_EQ(field().finds(), "2 found");
    type(stage.window, " strings");
    EXPECT_EQ(faded(), (std::vector{true, true, true, true}));
    EXPECT_EQ(field().finds(), "0 found");
}

TEST_F(Search, MarksWhatItFindsOnOpenCards) {
    open("sustain");
    auto& card = stage.card(1);
    EXPECT_GT(pixelsLike(picture(card), style::lifted(style::found, style::boxLift), card.getLocalBounds()),
              500);
    EXPECT_EQ(marked(card), 0);
    field().begin("pedal");
    EXPECT_GT(marked(card), 500) << "the name";
    EXPECT_LT(pixelsLike(picture(card), style::lifted(style::found, style::boxLift), card.getLocalBounds()),
              100);
}

TEST_F(Search, MarksWhatItFindsInOneLine) {
    stage.press('-', ctrl);
    EXPECT_EQ(marked(stage.card(1).line()), 0);
    open("sustain");
    EXPECT_GT(marked(stage.card(1).line()), 300);
    EXPECT_EQ(marked(stage.card(0).line()), 0);
    field().begin("cc");
    const auto line = stage.card(1).line().getLocalBounds();
    EXPECT_GT(pixelsLike(picture(stage.card(1).line()), style::found, line.withWidth(CardLine::markMargin)),
              20)
        << "It begins before the first word.";
}

TEST_F(Search, ShowsWhatItFindsInALineThatIsCut) {
    stage.press('-', ctrl);
    stage.view().setSize(500, 250);
    open("channel 2");
    EXPECT_GT(marked(stage.card(0).line()), 300) << "at its end";
    EXPECT_GT(marked(stage.card(2).line()), 300);
    EXPECT_EQ(stage.card(0).line().getTooltip(), stage.card(0).line().text());
}

TEST_F(Search, GoesFromFindToFindAndAround) {
    stage.view().setSize(500, 250);
    open("note on");
    const auto frame = [this](std::size_t position) {
        return pixelsLike(picture(stage.card(position)), style::foundEdge,
                          stage.card(position).getLocalBounds()) > 100;
    };
    EXPECT_TRUE(frame(0));
    EXPECT_TRUE(stage.press(juce::KeyPress::returnKey));
    EXPECT_GT(stage.view().list().scrollPosition(), 0) << "It is scrolled to.";
    EXPECT_FALSE(frame(0));
    EXPECT_TRUE(frame(2));
    EXPECT_TRUE(stage.press(juce::KeyPress::returnKey));
    EXPECT_TRUE(frame(0));
    EXPECT_TRUE(stage.press(juce::KeyPress::returnKey, shift));
    EXPECT_TRUE(frame(2));
}

TEST_F(Search, EscapeEndsItAndGivesTheKeyboardBack) {
    grip(stage.card(2)).grabKeyboardFocus();
    open("bass");
    EXPECT_EQ(EditorStage::focus(), "Search rules");
    EXPECT_TRUE(stage.press(juce::KeyPress::escapeKey));
    EXPECT_EQ(faded(), std::vector(4, false));
    EXPECT_EQ(field().text().getText(), "");
    EXPECT_EQ(field().finds(), "");
    EXPECT_TRUE(grip(stage.card(2)).hasKeyboardFocus(false));
}

TEST_F(Search, WithoutAFocusBeforeTheKeyboardIsTheHostsAgain) {
    click(field().text());
    type(stage.window, "bass");
    stage.press(juce::KeyPress::escapeKey);
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr);
}

TEST_F(Search, ThatIsClickedIntoGivesTheKeyboardToNobodyWhoHadItBefore) {
    const auto clickAndEnd = [this] {
        click(field().text());
        type(stage.window, "bass");
        stage.press(juce::KeyPress::escapeKey);
        return juce::Component::getCurrentlyFocusedComponent();
    };
    stage.card(2).buttons().deleteButton().grabKeyboardFocus();
    open("bass");
    stage.press(juce::KeyPress::escapeKey);
    EXPECT_EQ(EditorStage::focus(), "Delete");
    juce::Component::unfocusAllComponents();
    EXPECT_EQ(clickAndEnd(), nullptr);
    stage.card(2).buttons().deleteButton().grabKeyboardFocus();
    open("bass");
    click(stage.view().list(), {3, 3});
    EXPECT_EQ(clickAndEnd(), nullptr) << "It was let go before.";
}

TEST_F(Search, ThatIsOpenedByItsButtonGivesTheKeyboardToNobodyWhoHadItBeforeAnother) {
    stage.view().setSize(500, 400);
    grip(stage.card(2)).grabKeyboardFocus();
    open("bass");
    stage.press(juce::KeyPress::escapeKey);
    EXPECT_TRUE(grip(stage.card(2)).hasKeyboardFocus(false));
    juce::Component::unfocusAllComponents();
    click(stage.view().header().searchButton());
    ASSERT_EQ(EditorStage::focus(), "Search rules");
    stage.press(juce::KeyPress::escapeKey);
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr) << EditorStage::focus();
}

TEST_F(Search, GivesTheKeyboardBackToTheFieldThatWasTypedInto) {
    stage.beginTyping(stage.card(0).header(), "x");
    stage.view().keyPressed(juce::KeyPress('f', ctrl, 0));
    EXPECT_EQ(stage.names()[0], "x");
    stage.press(juce::KeyPress::escapeKey);
    EXPECT_TRUE(stage.card(0).header().hasKeyboardFocus(false));
}

TEST_F(Search, CtrlAndTheMinusKeyChangeTheFormWhileItIsTypedInto) {
    open("bass");
    EXPECT_TRUE(stage.press('-', ctrl));
    EXPECT_EQ(field().text().getText(), "bass");
    EXPECT_TRUE(stage.card(0).isInOneLine());
    EXPECT_FALSE(stage.press('1', ctrl)) << "The host's";
    EXPECT_EQ(field().text().getText(), "bass");
}

TEST_F(Search, OpensNoMenuOfTheWindowSystem) {
    EXPECT_FALSE(field().text().isPopupMenuEnabled());
}

TEST_F(Search, AClickElsewhereLetsTheKeyboardGoAndKeepsTheFinds) {
    open("bass");
    click(stage.view().list(), {3, 3});
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr);
    EXPECT_TRUE(faded()[1]);
    EXPECT_FALSE(stage.press(juce::KeyPress::spaceKey)) << "The host's";
}

TEST_F(Search, DownGoesToTheGripOfTheFind) {
    open("strings");
    EXPECT_TRUE(stage.press(juce::KeyPress::downKey));
    EXPECT_TRUE(grip(stage.card(1)).hasKeyboardFocus(false));
}

TEST_F(Search, BeginsWithWhatIsTypedOnAGrip) {
    grip(stage.card(0)).grabKeyboardFocus();
    EXPECT_TRUE(stage.press('e'));
    type(stage.window, "cho");
    EXPECT_EQ(field().text().getText(), "echo");
    EXPECT_EQ(faded(), (std::vector{true, true, false, true}));
    stage.press(juce::KeyPress::escapeKey);
    EXPECT_TRUE(grip(stage.card(0)).hasKeyboardFocus(false));
    EXPECT_FALSE(stage.press(juce::KeyPress::spaceKey)) << "The host's";
}

TEST_F(Search, FollowsWhatIsEdited) {
    open("channel 9");
    EXPECT_EQ(field().finds(), "0 found");
    auto changed = stage.entry(1);
    changed.trigger.channel = TriggerValueV2::Value{8};
    stage.editor().edit({stage.id(1)}, changed);
    EXPECT_EQ(field().finds(), "1 found");
    EXPECT_FALSE(faded()[1]);
}

TEST_F(Search, ReadsTheRulesOfARunThatIsUnfoldedAgain) {
    std::vector<Rule> run;
    for (std::uint8_t note = 36; note < 39; ++note) {
        run.push_back(rule(onNoteOn(exactly(note)), send(noteOn(1, 60, 100)), "split"));
    }
    EditorStage folded(run);
    const auto foldOrUnfold = [&folded](const char* row) {
        click(folded.card(0).buttons().moreButton());
        folded.pickInMenu(row);
    };
    foldOrUnfold("Unfold");
    folded.press('f', ctrl);
    type(folded.window, "channel 9");
    foldOrUnfold("Fold");
    auto changed = folded.entry(0);
    changed.output.channel = channel(8);
    folded.editor().edit(folded.editor().cardOf(folded.id(0)), changed);
    foldOrUnfold("Unfold");
    EXPECT_EQ(folded.view().header().searchField().finds(), "3 found");
}

TEST_F(Search, OpensInThePlaceOfTheButtonsWhereThereIsLittleRoom) {
    for (const auto width : {500, 240}) {
        stage.view().setSize(width, 400);
        EXPECT_FALSE(field().isVisible());
        EXPECT_EQ(stage.view().header().searchButton().isVisible(), width == 500);
        open("bass");
        EXPECT_TRUE(field().isVisible());
        EXPECT_GE(field().getWidth(), 140);
        EXPECT_FALSE(stage.view().header().importButton().isVisible());
        stage.press(juce::KeyPress::escapeKey);
        EXPECT_FALSE(field().isVisible());
        EXPECT_TRUE(stage.view().header().importButton().isVisible());
    }
}

TEST_F(Search, GivesTheKeyboardBackThoughTheWindowWasLeftMeanwhile) {
    stage.card(2).buttons().deleteButton().grabKeyboardFocus();
    open("bass");
    auto& peer = *stage.window.getPeer();
    peer.handleFocusLoss();
    peer.handleFocusGain();
    ASSERT_EQ(EditorStage::focus(), "Search rules");
    stage.press(juce::KeyPress::escapeKey);
    EXPECT_EQ(EditorStage::focus(), "Delete");
}

TEST_F(Search, StaysInSightInAWindowThatGetsNarrowWhileSomethingIsLookedFor) {
    click(field().text());
    type(stage.window, "bass");
    stage.view().setSize(500, 400);
    EXPECT_TRUE(field().isVisible());
    EXPECT_EQ(EditorStage::focus(), "Search rules");
    click(field().endButton());
    EXPECT_FALSE(field().isVisible());
}

TEST_F(Search, EmptiedByHandInAWideWindowItLeavesTheButtonsTheirPlaceInANarrowOne) {
    open("b");
    stage.view().setSize(stage.view().getWidth() - 1, 400);
    stage.press(juce::KeyPress::backspaceKey);
    ASSERT_TRUE(field().text().isEmpty());
    stage.view().setSize(500, 400);
    EXPECT_FALSE(field().isVisible());
    EXPECT_TRUE(stage.view().header().importButton().isVisible());
}

TEST_F(Search, ItsCrossEndsIt) {
    EXPECT_FALSE(field().endButton().isVisible());
    open("bass");
    click(field().endButton());
    EXPECT_EQ(faded(), std::vector(4, false));
    EXPECT_FALSE(field().endButton().isVisible());
    stage.view().setSize(500, 400);
    click(stage.view().header().searchButton());
    EXPECT_EQ(EditorStage::focus(), "Search rules");
    click(field().endButton());
    EXPECT_FALSE(field().isVisible()) << "Where it has a place for a time only, it goes.";
}

TEST_F(Search, EscapeEndsItFromACardAsWell) {
    open("bass");
    grip(stage.card(2)).grabKeyboardFocus();
    EXPECT_TRUE(stage.press(juce::KeyPress::escapeKey));
    EXPECT_EQ(faded(), std::vector(4, false));
}

TEST_F(Search, NothingIsSearchedBehindAMenu) {
    EditorStage::openMenu(test::field(stage.card(0).trigger(), "Note"));
    stage.press('f', ctrl);
    EXPECT_NE(stage.view().overlay(), nullptr);
    EXPECT_NE(EditorStage::focus(), "Search rules");
}

TEST_F(Search, OfAThousandRulesAllAreSearched) {
    EditorStage many(manyRules(1000));
    many.press('f', ctrl);
    type(many.window, "#987");
    EXPECT_EQ(many.view().header().searchField().finds(), "1 found");
    auto* card = many.view().card(many.id(986));
    ASSERT_NE(card, nullptr) << "It is scrolled to.";
    EXPECT_FLOAT_EQ(card->getAlpha(), 1);
}

class Playing : public Search {
protected:
    void play(const std::vector<std::uint8_t>& message) {
        stage.render({message});
        stage.view().advance(0);
    }

    std::vector<std::string> shown() {
        std::vector<std::string> names;
        for (const auto& id : stage.view().list().items()) {
            names.push_back(
                std::ranges::find(stage.editor().rules(), id, &RuleEntryIdentifiable::id)->rule.name);
        }
        return names;
    }

    using Names = std::vector<std::string>;
};

TEST_F(Playing, ShowsOnlyTheRulesThatFire) {
    auto& button = stage.view().header().playingButton();
    click(button);
    EXPECT_EQ(shown(), Names());
    play({0xB0, 64, 127});
    EXPECT_EQ(shown(), (Names{"Pedal brings strings"}));
    play({0x91, 60, 100});
    EXPECT_EQ(shown(), (Names{"Pedal brings strings", "Echo"}));
    EXPECT_EQ(stage.view().card(stage.id(2))->status().remark().words, juceText("1 × · now"));
    stage.desk.render(3 * static_cast<std::uint32_t>(defaultSampleRate));
    stage.desk.drain();
    stage.view().advance(0);
    EXPECT_EQ(shown().size(), 2U) << "They stay while nothing else is played.";
    play({0x90, 36, 100});
    EXPECT_EQ(shown(), (Names{"Bass split"}));
    click(button);
    EXPECT_EQ(shown().size(), 4U);
}

TEST_F(Playing, ARuleThatIsMovedAmongThoseThatAreShownPassesThemOnly) {
    click(stage.view().header().playingButton());
    play({0x90, 36, 100});
    play({0x91, 60, 100});
    EXPECT_EQ(shown(), (Names{"Bass split", "Echo"}));
    stage.view().list().moveBy(stage.id(0), 1);
    EXPECT_EQ(stage.names(), (Names{"Pedal brings strings", "Echo", "Bass split", "Silence at the stop"}));
    stage.view().list().moveBy(stage.id(2), -1);
    EXPECT_EQ(stage.names(), (Names{"Pedal brings strings", "Bass split", "Echo", "Silence at the stop"}));
}

TEST_F(Playing, EndsWhenARuleIsAdded) {
    click(stage.view().header().playingButton());
    play({0x90, 36, 100});
    click(stage.card(0).buttons().duplicateButton());
    EXPECT_EQ(shown().size(), 5U);
    EXPECT_FALSE(stage.view().header().playingButton().getToggleState());
}

TEST_F(Playing, EndsWhenARuleThatIsLeftOutIsChangedByUndo) {
    auto changed = stage.entry(3);
    changed.name = "x";
    stage.editor().edit({stage.id(3)}, changed);
    click(stage.view().header().playingButton());
    play({0x90, 36, 100});
    changed = stage.entry(0);
    changed.output.delay.ms = 1;
    stage.editor().edit({stage.id(0)}, changed);
    stage.editor().undo();
    EXPECT_EQ(shown(), (Names{"Bass split"}));
    stage.editor().undo();
    EXPECT_EQ(shown().size(), 4U);
    EXPECT_NE(stage.view().card(stage.id(3)), nullptr);
}

TEST_F(Playing, StaysInSightAsLongAsItIsOn) {
    auto& button = stage.view().header().playingButton();
    click(button);
    for (const auto width : {500, 240}) {
        stage.view().setSize(width, 400);
        EXPECT_TRUE(button.isVisible()) << width;
    }
    click(button);
    EXPECT_EQ(shown().size(), 4U);
    EXPECT_FALSE(button.isVisible());
    EXPECT_TRUE(stage.view().header().importButton().isVisible());
}

TEST_F(Playing, TheCardThatHasTheKeyboardStaysWithWhatIsTyped) {
    click(stage.view().header().playingButton());
    play({0x90, 36, 100});
    auto& delay = test::field(stage.card(0).output(), "Delay (ms)");
    stage.beginTyping(delay, "25");
    stage.desk.render(3 * static_cast<std::uint32_t>(defaultSampleRate));
    play({0x91, 60, 100});
    EXPECT_EQ(shown(), (Names{"Bass split", "Echo"}));
    key(stage.window, juce::KeyPress::returnKey);
    EXPECT_EQ(stage.entry(0).output.delay.ms, 25);
    juce::Component::unfocusAllComponents();
    stage.view().advance(0);
    EXPECT_EQ(shown(), (Names{"Echo"}));
}

TEST_F(Playing, BeginsWithTheCardThatHasTheKeyboard) {
    click(grip(stage.card(1)));
    click(stage.view().header().playingButton());
    EXPECT_EQ(shown(), (Names{"Pedal brings strings"}));
    EXPECT_TRUE(grip(stage.card(1)).hasKeyboardFocus(false));
}

TEST_F(Playing, FindsAreCountedAmongTheCardsThatAreShown) {
    click(stage.view().header().playingButton());
    open("channel 2");
    EXPECT_EQ(field().finds(), "0 found");
    play({0x91, 60, 100});
    EXPECT_EQ(field().finds(), "1 found");
}

TEST_F(Playing, NoCardGoesWhileSomeAreDraggedOrAMenuIsOpen) {
    click(stage.view().header().playingButton());
    play({0x90, 36, 100});
    stage.desk.render(3 * static_cast<std::uint32_t>(defaultSampleRate));
    stage.view().list().startDrag(stage.id(0), {5, 20});
    play({0x91, 60, 100});
    EXPECT_EQ(shown(), (Names{"Bass split"}));
    stage.view().list().cancelDrag();
    click(stage.card(0).buttons().moreButton());
    stage.view().advance(0);
    EXPECT_EQ(shown(), (Names{"Bass split"}));
    stage.press(juce::KeyPress::escapeKey);
    juce::Component::unfocusAllComponents();
    stage.view().advance(0);
    EXPECT_EQ(shown(), (Names{"Echo"}));
}

TEST_F(Playing, OfTheCardsThatAreShownTheNeighbourOfADeletedOneHasTheKeyboard) {
    click(stage.view().header().playingButton());
    play({0x90, 36, 100});
    play({0x91, 60, 100});
    EXPECT_EQ(shown(), (Names{"Bass split", "Echo"}));
    stage.card(0).buttons().deleteButton().grabKeyboardFocus();
    stage.press(juce::KeyPress::returnKey);
    EXPECT_EQ(shown(), (Names{"Echo"}));
    EXPECT_TRUE(stage.card(1).buttons().deleteButton().hasKeyboardFocus(false));
    stage.press(juce::KeyPress::returnKey);
    EXPECT_EQ(shown(), Names());
    EXPECT_EQ(EditorStage::focus(), "Add new");
    EXPECT_EQ(stage.names(), (Names{"Pedal brings strings", "Silence at the stop"}));
}

TEST_F(Playing, EndsWithTheSearch) {
    click(stage.view().header().playingButton());
    open("x");
    stage.press(juce::KeyPress::escapeKey);
    EXPECT_EQ(shown().size(), 4U);
}

}  // namespace
}  // namespace quillo
