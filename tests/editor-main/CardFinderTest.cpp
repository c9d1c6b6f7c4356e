// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/CardFinder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace quillo {
namespace {

/// Four cards, of which the second and the fourth have an "x".
class CardFinderTest : public testing::Test {
protected:
    std::optional<std::size_t> goOn(bool forward) {
        const auto found = finder.goOn(cards, forward);
        return found ? std::optional<std::size_t>(std::ranges::find(cards, *found) - cards.begin())
                     : std::nullopt;
    }

    std::vector<UUID> cards = std::vector<UUID>(4);
    std::map<UUID, juce::String> names{
        {cards[0], "a"}, {cards[1], "x b"}, {cards[2], "c"}, {cards[3], "x d"}};
    int asked = 0;
    CardFinder finder{[this](const UUID& card) {
        ++asked;
        return std::vector<SearchedText>{{"", names[card], ""}};
    }};
};

TEST_F(CardFinderTest, GoesFromFindToFindAndAround) {
    finder.look("x");
    EXPECT_EQ(finder.current(), std::nullopt);
    EXPECT_EQ(goOn(true), 1U);
    EXPECT_EQ(finder.current(), cards[1]);
    EXPECT_EQ(goOn(true), 3U);
    EXPECT_EQ(goOn(true), 1U);
    EXPECT_EQ(goOn(false), 3U);
    EXPECT_EQ(goOn(false), 1U);
    EXPECT_EQ(finder.count(cards), 2U);
}

TEST_F(CardFinderTest, BeginsAtTheEndOfTheListBackwards) {
    finder.look("x");
    EXPECT_EQ(goOn(false), 3U);
}

TEST_F(CardFinderTest, FindsNothingWhereNothingIs) {
    finder.look("y");
    EXPECT_EQ(goOn(true), std::nullopt);
    EXPECT_EQ(finder.count(cards), 0U);
    EXPECT_EQ(finder.goOn({}, true), std::nullopt);
    EXPECT_EQ(finder.goOn({}, false), std::nullopt);
    finder.look("");
    EXPECT_FALSE(finder.isLooking());
    EXPECT_EQ(goOn(true), std::nullopt);
}

TEST_F(CardFinderTest, GoesOnFromTheStartWhenTheCardThatItLookedAtIsGone) {
    finder.look("x");
    EXPECT_EQ(goOn(true), 1U);
    cards.erase(cards.begin() + 1);
    EXPECT_EQ(goOn(true), 2U);
}

TEST_F(CardFinderTest, ReadsACardOnceAndAgainAfterAChange) {
    finder.look("x");
    EXPECT_EQ(finder.count(cards), 2U);
    EXPECT_EQ(finder.count(cards), 2U);
    EXPECT_EQ(asked, 4);
    names[cards[0]] = "x a";
    EXPECT_EQ(finder.find(cards[0]), std::nullopt);
    finder.forget(cards[0]);
    EXPECT_EQ(finder.find(cards[0]), std::set<std::size_t>{0});
}

}  // namespace
}  // namespace quillo
