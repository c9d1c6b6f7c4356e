// SPDX-License-Identifier: GPL-3.0-or-later
// An entry of the In log is asked why, in the editor.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "editor-main/EditorStage.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using Texts = std::vector<std::string>;
using Transport = HostTransportTriggerVariantsV2;

const RuleOutputV2 answerOutput = send(noteOn(0, 1, 1));

class WhyInTheEditor : public testing::Test {
protected:
    void open(std::vector<Rule> rules, juce::Point<int> size = {820, 1200}) {
        stage = std::make_unique<EditorStage>(std::move(rules), size);
        click(logger().collapsedForm().arrow());
        logger().advance(InOutLogger::movement);
    }

    InOutLogger& logger() { return stage->view().logger(); }
    EntryList& in() { return logger().openedForm().inList(); }
    EntryList& out() { return logger().openedForm().outList(); }
    juce::Button& why() { return in().actionButton(0); }
    juce::Button& newRule() { return in().actionButton(1); }
    static void choose(EntryList& list, int row) {
        const auto area = list.rowArea(row);
        click(list, {area.getX() + 20, area.getCentreY()});
    }
    void pressIn(EntryList& list, int code) {
        findBelow<juce::ListBox>(list)->grabKeyboardFocus();
        key(stage->window, code);
    }

    /// What the cards say, from the first to the last.
    Texts reasons() {
        Texts texts;
        for (std::size_t position = 0; position < stage->editor().rules().size(); ++position) {
            texts.push_back(stage->card(position).status().remark().words.toStdString());
        }
        return texts;
    }
    bool noneSays(const std::string& words) {
        return std::ranges::none_of(reasons(), [&](const auto& text) { return text.starts_with(words); });
    }
    bool isAsking() { return !noneSays("fired:") || !noneSays("passed over:"); }

    /// Whether all of a rule's card is in sight.
    bool isInSight(std::size_t position) {
        const auto* card = stage->view().card(stage->id(position));
        auto& list = stage->view().list();
        return card != nullptr &&
               list.getLocalBounds().contains(list.getLocalArea(card, card->getLocalBounds()));
    }

    std::unique_ptr<EditorStage> stage;
};

TEST_F(WhyInTheEditor, EveryCardSaysWhatItMadeOfTheChosenEntryUntilClose) {
    open({rule(onNoteOff(), answerOutput, "End"), rule(onNoteOn(), send(noteOn(2, 1, 1), 20), "Echo"),
          rule(onNoteOn(any, any, eatMatching), answerOutput, "Eat"),
          rule(onNoteOn(), answerOutput, "Late")});
    stage->render({{0x90, 60, 100}});
    EXPECT_FALSE(why().isVisible());
    choose(in(), 0);
    EXPECT_TRUE(why().isVisible());
    EXPECT_TRUE(noneSays("fired:")) << "Nobody has asked yet.";
    click(why());
    EXPECT_THAT(reasons(), ElementsAre("passed over: it waits for Note Off, this is a Note On",
                                       "fired: sent 92 01 01 after 20 ms",
                                       "fired: sent 90 01 01 at once, and consumed it",
                                       "not reached: rule 3 \"Eat\" consumed it"));
    EXPECT_FALSE(stage->card(0).isLit());
    EXPECT_TRUE(stage->card(1).isLit());
    EXPECT_EQ(why().getButtonText(), "Close");
    click(why());
    EXPECT_FALSE(isAsking());
    EXPECT_EQ(why().getButtonText(), "Why");
}

/// Three rules for three notes, on one card.
std::vector<Rule> threeNotes() {
    std::vector<Rule> rules;
    for (std::uint8_t note = 36; note < 39; ++note) {
        rules.push_back(
            rule(onNoteOn(exactly(note), exactly(0), eatMatching), send(noteOn(2, note, 1)), "Three"));
    }
    return rules;
}

TEST_F(WhyInTheEditor, TheCardOfARunSpeaksForItsRules) {
    auto rules = threeNotes();
    rules.push_back(rule(onNoteOn(), answerOutput, "Late"));
    open(rules);
    stage->render({{0x90, 37, 100}, {0x90, 60, 100}, {0x91, 37, 100}});
    const auto reasonFor = [this](int row) {
        choose(in(), row);
        return stage->card(0).status().remark().words;
    };
    choose(in(), 0);
    click(why());
    EXPECT_EQ(reasonFor(0), "fired: sent 92 25 01 at once, and consumed it");
    EXPECT_EQ(stage->card(3).status().remark().words, "not reached: rule 2 \"Three\" consumed it");
    EXPECT_EQ(reasonFor(1), "passed over: it waits for note 36 (C1) to 38 (D1), this is note 60 (C3)");
    EXPECT_EQ(reasonFor(2), "passed over: it waits for channel 1, this is channel 2");
    EXPECT_TRUE(stage->card(3).isLit());
}

TEST_F(WhyInTheEditor, EscapeEndsItWhereverTheKeyboardIs) {
    open({rule(onNoteOn(), answerOutput)});
    stage->render({{0x90, 60, 100}});
    choose(in(), 0);
    click(why());
    ASSERT_TRUE(isAsking());
    juce::Component::unfocusAllComponents();
    EXPECT_TRUE(stage->press(juce::KeyPress::escapeKey)) << "The window's owner hands it over.";
    EXPECT_FALSE(isAsking());
    EXPECT_FALSE(stage->press(juce::KeyPress::escapeKey)) << "Now it is the host's.";
    pressIn(in(), juce::KeyPress::returnKey);
    ASSERT_TRUE(isAsking());
    pressIn(in(), juce::KeyPress::escapeKey);
    EXPECT_FALSE(isAsking());
    EXPECT_FALSE(why().isVisible()) << "The row has been let go.";
}

TEST_F(WhyInTheEditor, ReturnChoosesTheNewestAsksAndClosesAndTheArrowsGoOnAsking) {
    open({rule(onNoteOn(), answerOutput)});
    stage->render({{0x80, 60, 0}, {0x90, 60, 100}});
    pressIn(in(), juce::KeyPress::returnKey);
    EXPECT_EQ(in().textToCopy(), "[0] 90 3c 64");
    EXPECT_FALSE(isAsking());
    pressIn(in(), juce::KeyPress::returnKey);
    EXPECT_THAT(reasons(), ElementsAre("fired: sent 90 01 01 at once"));
    pressIn(in(), juce::KeyPress::upKey);
    EXPECT_THAT(reasons(), ElementsAre("passed over: it waits for Note On, this is a Note Off"));
    pressIn(in(), juce::KeyPress::returnKey);
    EXPECT_FALSE(isAsking());
}

TEST_F(WhyInTheEditor, WhereALineHasNoRoomBesideItTheReasonTakesItsPlace) {
    open({rule(onNoteOn(), answerOutput)}, {500, 250});
    stage->press('-', ctrl);
    stage->render({{0x90, 60, 100}});
    auto& card = stage->card();
    const auto line = card.line().getBounds();
    choose(in(), 0);
    click(why());
    EXPECT_THAT(reasons(), ElementsAre("fired: sent 90 01 01 at once"));
    EXPECT_FALSE(card.status().getBounds().isEmpty());
    EXPECT_TRUE(line.contains(card.status().getBounds()));
    EXPECT_TRUE(card.line().getBounds().isEmpty());
    stage->view().setSize(240, 400);
    EXPECT_EQ(card.status().getTooltip(), "fired: sent 90 01 01 at once") << "It is cut.";
    stage->view().setSize(500, 250);
    click(why());
    EXPECT_EQ(card.line().getBounds(), line);
    EXPECT_TRUE(card.status().getBounds().isEmpty());
}

TEST_F(WhyInTheEditor, TheHostsTransportCanBeAskedAboutToo) {
    open({rule(onHost(Transport::Stop), answerOutput)});
    stage->desk.session().model()->appendToInLog({{0, EventLogEntryVariants::Host{Transport::Start}}});
    choose(in(), 0);
    click(why());
    EXPECT_THAT(reasons(),
                ElementsAre("passed over: it waits for the host's transport to stop, this is its start"));
}

TEST_F(WhyInTheEditor, TheReasonsFollowEditsAndRulesThatTheHostRestores) {
    open({rule(onNoteOn(exactly(61)), answerOutput)});
    stage->render({{0x90, 60, 100}});
    choose(in(), 0);
    click(why());
    EXPECT_THAT(reasons(), ElementsAre("passed over: it waits for note 61 (C♯3), this is note 60 (C3)"));
    stage->pick(field(stage->card().trigger(), "Note"), "60 (C3)");
    EXPECT_THAT(reasons(), ElementsAre("fired: sent 90 01 01 at once"));
    stage->editor().duplicate({stage->id(0)});
    EXPECT_THAT(reasons(), ElementsAre("fired: sent 90 01 01 at once", "fired: sent 90 01 01 at once"));
    stage->desk.session().install({rule(onMIDIStart(), answerOutput)});
    stage->desk.drain();
    EXPECT_THAT(reasons(), ElementsAre("passed over: it waits for MIDI Start, this is a Note On"));
}

TEST_F(WhyInTheEditor, TheFirstCardThatFiredIsScrolledIntoSight) {
    std::vector<Rule> rules(40, rule(onNoteOff(), answerOutput));
    rules[30] = rules[35] = rule(onNoteOn(), answerOutput);
    open(rules, {820, 640});
    stage->render({{0x90, 60, 100}});
    choose(in(), 0);
    click(why());
    EXPECT_TRUE(isInSight(30));
}

TEST_F(WhyInTheEditor, TheCardThatConsumedIsScrolledIntoSightWhereNoneFired) {
    std::vector<Rule> rules(40, rule(onNoteOff(), answerOutput));
    rules[20] = rule(onNoteOff(any, any, PassThroughV2::EatNonMatching), answerOutput, "Only ends");
    open(rules, {820, 640});
    stage->render({{0x90, 60, 100}});
    choose(in(), 0);
    click(why());
    EXPECT_TRUE(isInSight(20));
    EXPECT_EQ(reasons()[20], "consumed it: it waits for Note Off, this is a Note On");
}

TEST_F(WhyInTheEditor, ItEndsWhenTheEntryIsGone) {
    open({rule(onNoteOn(), answerOutput)});
    for (const bool byClear : {true, false}) {
        stage->render({{0x90, 60, 100}});
        choose(in(), 0);
        click(why());
        ASSERT_TRUE(isAsking());
        if (byClear) {
            click(logger().openedForm().clearButton());
        } else {
            click(logger().openedForm().arrow());
            logger().advance(InOutLogger::movement);
        }
        EXPECT_FALSE(isAsking());
    }
}

TEST_F(WhyInTheEditor, SeveralSelectedRowsHaveNoButtons) {
    open({});
    stage->render({{0x90, 60, 100}, {0x80, 60, 0}});
    choose(in(), 0);
    pressIn(in(), juce::KeyPress::downKey);
    EXPECT_TRUE(why().isVisible());
    key(stage->window, juce::KeyPress::upKey, juce::ModifierKeys::shiftModifier);
    EXPECT_FALSE(why().isVisible());
}

TEST_F(WhyInTheEditor, TheButtonsFollowTheirRowAndGoOutOfSightWithIt) {
    open({}, {820, 640});
    for (int note = 0; note < 100; ++note) {
        stage->desk.render(1, {{0x90, 60, 1}});
    }
    stage->desk.drain();
    choose(in(), 99);
    EXPECT_EQ(why().getBounds().getCentreY(), in().rowArea(99).getCentreY());
    wheel(in(), 100);
    EXPECT_FALSE(why().isVisible());
    wheel(in(), -100);
    EXPECT_TRUE(why().isVisible());
}

TEST_F(WhyInTheEditor, InANarrowListTheButtonsLeaveRoomForTheBytes) {
    open({}, {200, 300});
    stage->desk.render(1'000'000'000);
    stage->render({{0x90, 60, 100}});
    choose(in(), 0);
    EXPECT_TRUE(in().getLocalBounds().contains(why().getBounds()));
    EXPECT_GE(why().getX() - in().rowArea(0).getX(), entryFont().getStringWidth("90 3c 64") + 6);
    EXPECT_GE(newRule().getX(), why().getRight());
}

TEST_F(WhyInTheEditor, ANewRuleWaitsForAnEntryOfTheInLog) {
    open({rule(onNoteOff(), answerOutput, "Message #4")});
    stage->render({{0xB1, 64, 127}});
    choose(in(), 0);
    click(newRule());
    EXPECT_EQ(stage->installed()[1],
              rule(onControlChange(64, exactly(127), exactly(1)), send(noteOn(0, 60, 64)), "Message #5"));
    EXPECT_TRUE(isInSight(1));
    stage->press('z', juce::ModifierKeys::commandModifier);
    EXPECT_EQ(stage->installed().size(), 1U);
}

TEST_F(WhyInTheEditor, ANewRuleSendsAnEntryOfTheOutLog) {
    open({});
    stage->render({{0xE1, 1, 64}});
    choose(out(), 0);
    click(out().actionButton(0));
    EXPECT_EQ(stage->installed(),
              (std::vector{rule(onLoad(), send(protocol(StatusV2::pitchWheel, channel(1), byte(1), byte(64))),
                                "Message #1")}));
}

TEST_F(WhyInTheEditor, NewRuleIsGreyForWhatNoRuleCanWaitForOrSend) {
    open({});
    stage->render({{0xE0, 0, 64}, {0xFA}});
    choose(in(), 0);
    EXPECT_FALSE(newRule().isEnabled());
    EXPECT_TRUE(why().isEnabled());
    choose(in(), 1);
    EXPECT_TRUE(newRule().isEnabled());
    choose(out(), 1);
    EXPECT_FALSE(out().actionButton(0).isEnabled());
}

TEST_F(WhyInTheEditor, IsReachedByTheKeyboardAloneFromAFreshWindow) {
    stage = std::make_unique<EditorStage>(std::vector{rule(onNoteOn(), answerOutput)});
    stage->render({{0x90, 60, 100}});
    ASSERT_TRUE(stage->tabTo("Open the logs"));
    stage->press(juce::KeyPress::returnKey);
    logger().advance(InOutLogger::movement);
    ASSERT_TRUE(stage->tabTo("In:"));
    stage->press(juce::KeyPress::returnKey);
    ASSERT_TRUE(stage->tabTo("Why"));
    stage->press(juce::KeyPress::returnKey);
    EXPECT_THAT(reasons(), ElementsAre("fired: sent 90 01 01 at once"));
    EXPECT_EQ(EditorStage::focus(), "Close");
    ASSERT_TRUE(stage->tabTo("New rule"));
    stage->press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage->installed().size(), 2U);
}

}  // namespace
}  // namespace quillo
