// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ItemSelection.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>

namespace quillo {
namespace {

using Items = std::vector<UUID>;

class ItemSelectionTest : public testing::Test {
protected:
    ItemSelectionTest() { selection.follow(items); }

    void expectChosen(std::initializer_list<std::size_t> positions) {
        Items expected;
        for (const auto position : positions) {
            expected.push_back(items[position]);
        }
        EXPECT_EQ(selection.chosen(), expected);
    }

    const Items items{UUID(), UUID(), UUID(), UUID(), UUID()};
    ItemSelection selection;
};

TEST_F(ItemSelectionTest, IsEmptyAtFirst) {
    EXPECT_TRUE(selection.isEmpty());
    expectChosen({});
}

TEST_F(ItemSelectionTest, AnItemThatIsChosenIsChosenAlone) {
    selection.chooseAll();
    expectChosen({0, 1, 2, 3, 4});
    selection.choose(items[3]);
    expectChosen({3});
}

TEST_F(ItemSelectionTest, AnItemIsToggledBesideTheOthers) {
    selection.choose(items[4]);
    selection.toggle(items[1]);
    expectChosen({1, 4});
    selection.toggle(items[4]);
    expectChosen({1});
}

TEST_F(ItemSelectionTest, ARangeGoesFromTheAnchorInEitherDirectionAndReplacesTheLastOne) {
    selection.choose(items[2]);
    selection.extendTo(items[4]);
    expectChosen({2, 3, 4});
    selection.extendTo(items[1]);
    expectChosen({1, 2});
    selection.extendTo(items[2]);
    expectChosen({2});
}

TEST_F(ItemSelectionTest, ARangeBeginsAtWhatWasToggledLast) {
    selection.choose(items[0]);
    selection.toggle(items[3]);
    selection.extendTo(items[4]);
    expectChosen({3, 4});
}

TEST_F(ItemSelectionTest, WithoutAnAnchorARangeIsOneItemFromWhichTheNextGoesOn) {
    selection.extendTo(items[1]);
    expectChosen({1});
    selection.extendTo(items[3]);
    expectChosen({1, 2, 3});
}

TEST_F(ItemSelectionTest, WhatIsGoneIsNoLongerChosenAndNoAnchor) {
    selection.choose(items[1]);
    selection.extendTo(items[3]);
    selection.follow({items[4], items[3], items[0]});
    expectChosen({3});
    selection.extendTo(items[0]);
    expectChosen({0});
}

TEST_F(ItemSelectionTest, StandsInTheOrderOfTheListAsItIsNow) {
    selection.choose(items[1]);
    selection.toggle(items[3]);
    selection.follow({items[3], items[0], items[1]});
    EXPECT_EQ(selection.chosen(), (Items{items[3], items[1]}));
}

TEST_F(ItemSelectionTest, SomeItemsAreChosenAtOnceFromTheFirstOn) {
    selection.choose(items[0]);
    selection.chooseAll({items[2], items[3], UUID()});
    expectChosen({2, 3});
    selection.extendTo(items[1]);
    expectChosen({1, 2});
}

TEST_F(ItemSelectionTest, WhatIsNotInTheListIsIgnored) {
    selection.choose(items[1]);
    selection.toggle(UUID());
    selection.extendTo(UUID());
    expectChosen({1});
}

TEST_F(ItemSelectionTest, AChosenItemIsHandledWithTheOthersAndAnyOtherAlone) {
    selection.choose(items[3]);
    selection.toggle(items[1]);
    EXPECT_EQ(selection.togetherWith(items[3]), (Items{items[1], items[3]}));
    EXPECT_EQ(selection.togetherWith(items[0]), Items{items[0]});
    selection.clear();
    EXPECT_EQ(selection.togetherWith(items[3]), Items{items[3]});
}

}  // namespace
}  // namespace quillo
