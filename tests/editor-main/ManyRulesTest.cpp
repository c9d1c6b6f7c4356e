// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

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

}  // namespace
}  // namespace quillo
