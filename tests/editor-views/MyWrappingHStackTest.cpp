// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyWrappingHStack.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

using Area = juce::Rectangle<int>;
using Areas = std::vector<Area>;
using Sizes = std::vector<juce::Point<int>>;

struct SizedView : juce::Component, PreferredSize {
    SizedView(int width, int height) : wanted(width, height) { setVisible(true); }
    [[nodiscard]] int preferredWidth() const override { return wanted.x; }
    [[nodiscard]] int preferredHeight() const override { return wanted.y; }
    juce::Point<int> wanted;
};

const Sizes three{{50, 20}, {60, 30}, {70, 20}};

TEST(MyWrappingHStack, LaysAllInARowWhereThereIsRoom) {
    EXPECT_EQ(MyWrappingHStack::place(three, {6, 8}, false, 192),
              (Areas{{0, 10, 50, 20}, {56, 0, 60, 30}, {122, 10, 70, 20}}));
    EXPECT_EQ(MyWrappingHStack::height(three, {6, 8}, 192), 30);
}

TEST(MyWrappingHStack, WrapsWhatDoesNotFit) {
    EXPECT_EQ(MyWrappingHStack::place(three, {6, 8}, false, 191),
              (Areas{{0, 10, 50, 20}, {56, 0, 60, 30}, {0, 38, 70, 20}}));
    EXPECT_EQ(MyWrappingHStack::height(three, {6, 8}, 191), 58);
    EXPECT_EQ(MyWrappingHStack::height(three, {6, 8}, 80), 20 + 8 + 30 + 8 + 20);
}

TEST(MyWrappingHStack, GivesNoViewMoreThanTheWidth) {
    EXPECT_EQ(MyWrappingHStack::place(three, {6, 8}, false, 55),
              (Areas{{0, 0, 50, 20}, {0, 28, 55, 30}, {0, 66, 55, 20}}));
    for (const int width : {0, 1}) {
        for (const auto& place : MyWrappingHStack::place(three, {6, 8}, true, width)) {
            EXPECT_LE(place.getWidth(), width);
        }
    }
}

TEST(MyWrappingHStack, MaxContentFillsEachRow) {
    const auto places = MyWrappingHStack::place(three, {6, 8}, true, 200);
    EXPECT_EQ(places.back().getRight(), 200);
    const auto wrapped = MyWrappingHStack::place(three, {6, 8}, true, 131);
    EXPECT_EQ(wrapped[1].getRight(), 131);
    EXPECT_EQ(wrapped[2], Area(0, 38, 131, 20));
}

TEST(MyWrappingHStack, NothingOverlapsAtAnyWidth) {
    for (const bool maxContent : {false, true}) {
        for (int width = 1; width < 220; ++width) {
            const auto places = MyWrappingHStack::place(three, {6, 8}, maxContent, width);
            EXPECT_FALSE(places[0].intersects(places[1]) || places[1].intersects(places[2]) ||
                         places[0].intersects(places[2]))
                << width;
            EXPECT_LE(std::max({places[0].getRight(), places[1].getRight(), places[2].getRight()}), width);
        }
    }
}

TEST(MyWrappingHStack, LaysItsViewsByTheirPreferredSizes) {
    MyWrappingHStack stack({6, 8});
    SizedView first(50, 20);
    SizedView second(60, 20);
    juce::Component plain;
    plain.setSize(30, 10);
    plain.setVisible(true);
    stack.setViews({&first, &second, &plain});
    EXPECT_EQ(stack.preferredWidth(), 152);
    EXPECT_EQ(stack.preferredHeight(), 20);
    stack.setSize(120, 38);
    EXPECT_EQ(second.getBounds(), Area(56, 0, 60, 20));
    EXPECT_EQ(plain.getBounds(), Area(0, 28, 30, 10));
    second.wanted.x = 80;
    stack.resized();
    EXPECT_EQ(second.getPosition(), juce::Point<int>(0, 28));
}

TEST(MyWrappingHStack, InvisibleViewsTakeNoRoom) {
    MyWrappingHStack stack({6, 8});
    SizedView first(50, 20);
    SizedView second(60, 40);
    stack.setViews({&first, &second});
    second.setVisible(false);
    EXPECT_EQ(stack.preferredWidth(), 50);
}

TEST(MyWrappingHStack, TakesOutTheViewsThatAreNotSetAgain) {
    MyWrappingHStack stack({6, 8});
    SizedView first(50, 20);
    SizedView second(60, 20);
    SizedView third(70, 20);
    stack.setViews({&first, &second});
    stack.setViews({&third, &second});
    EXPECT_EQ(first.getParentComponent(), nullptr);
    EXPECT_EQ(second.getParentComponent(), &stack);
    stack.setSize(140, 20);
    EXPECT_EQ(second.getBounds(), Area(76, 0, 60, 20)) << "The first is the third now.";
}

}  // namespace
}  // namespace quillo
