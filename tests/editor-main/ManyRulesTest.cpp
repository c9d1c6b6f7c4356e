// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <utility>

#include "editor-main/EditorStage.hpp"
#include "programs/editor/DemoRules.hpp"

namespace quillo {
namespace {

using namespace test;

std::size_t cardsBelow(const juce::Component& view) {
    std::size_t cards = 0;
    for (auto* child : view.getChildren()) {
        cards += dynamic_cast<const RuleView*>(child) != nullptr ? 1 : cardsBelow(*child);
    }
    return cards;
}

class ThousandRules : public testing::Test {
protected:
    EditorStage stage{manyRules(1000), {500, 250}};
};

TEST_F(ThousandRules, HaveCardsWhereTheyAreInSightOnly) {
    EXPECT_GE(cardsBelow(stage.view().list()), 2U);
    EXPECT_LE(cardsBelow(stage.view().list()), 8U);
    EXPECT_EQ(stage.view().card(stage.id(500)), nullptr);
}

TEST_F(ThousandRules, ScrolledToTheMiddleShowRule501) {
    auto& card = stage.card(500);
    EXPECT_EQ(card.header().shownText(), "Message #501");
    EXPECT_EQ(card.getTitle(), "Message #501");
    EXPECT_LE(cardsBelow(stage.view().list()), 8U);
    EXPECT_EQ(stage.view().card(stage.id(0)), nullptr);
    EXPECT_TRUE(stage.view().list().getLocalBounds().intersects(
        stage.view().list().getLocalArea(&card, card.getLocalBounds())));
}

TEST_F(ThousandRules, TakeAnEditInTheMiddle) {
    stage.typeInto(stage.card(500).header(), "Here");
    EXPECT_EQ(stage.installed()[500].name, "Here");
    EXPECT_EQ(stage.installed()[499].name, "Message #500");
    EXPECT_EQ(stage.installed().size(), 1000U);
}

TEST_F(ThousandRules, KeepTheirPlaceOnTheScreenWhenOneIsDeletedAbove) {
    auto& card = stage.card(500);
    const auto placeOf = [this](RuleView& shown) {
        return stage.view().list().getLocalPoint(&shown, juce::Point(0, 0)).y;
    };
    const auto before = placeOf(card);
    stage.editor().remove({stage.id(3)});
    EXPECT_EQ(placeOf(*stage.view().card(stage.id(499))), before);
}

TEST_F(ThousandRules, AreScrolledByTheWheel) {
    wheel(stage.view().list(), -1);
    EXPECT_EQ(stage.view().list().scrollPosition(), 240);
    wheel(stage.view().list(), 1);
    EXPECT_EQ(stage.view().list().scrollPosition(), 0);
}

TEST_F(ThousandRules, ShowTheOneThatIsAdded) {
    stage.editor().add(MIDIRuleType::OutputType{OutputEntryType::NoteOn});
    EXPECT_EQ(stage.installed().back().name, "Message #1001");
    EXPECT_EQ(stage.card(1000).header().shownText(), "Message #1001");
}

/// Ten thousand rules in two hundred runs, and what an edit of them makes the list of cards do.
class ManyRuns : public testing::Test {
protected:
    ManyRuns() {
        auto& list = stage.view().list();
        list.heightOfRow = [this, ask = list.heightOfRow](const UUID& id, int width) {
            ++heights;
            return ask(id, width);
        };
        list.setFooter(stage.view().footer(), [this](int /*width*/) {
            ++layouts;
            return 0;
        });
        heights = layouts = 0;
    }

    EditorStage stage{manyRuns(200, 50), {500, 250}};
    int heights = 0;
    int layouts = 0;
};

TEST_F(ManyRuns, AnEditOfOneMeasuresOneCard) {
    ASSERT_EQ(stage.view().list().items().size(), 200U);
    auto changed = stage.entry(0);
    changed.output.delay.ms = 1;
    stage.editor().edit(stage.editor().cardOf(stage.id(0)), changed);
    EXPECT_EQ(stage.installed()[49].output.delay, changed.output.delay);
    EXPECT_EQ(heights, 1);
}

TEST_F(ManyRuns, AnEditLaysTheListOutAsOftenForAllAsForOne) {
    stage.editor().setOff(stage.editor().cardOf(stage.id(0)), true);
    const auto forOne = std::exchange(layouts, 0);
    RuleIds all;
    for (const auto& element : stage.editor().rules()) {
        all.push_back(element.id);
    }
    stage.editor().setOff(all, true);
    EXPECT_TRUE(stage.installed().empty());
    EXPECT_LE(layouts, forOne);
}

}  // namespace
}  // namespace quillo
