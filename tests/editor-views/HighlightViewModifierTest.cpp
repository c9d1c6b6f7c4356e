// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/HighlightViewModifier.hpp"

#include <gtest/gtest.h>

#include "support/JuceEvents.hpp"
#include "support/OffscreenWindow.hpp"
#include "support/Pictures.hpp"

namespace quillo {
namespace {

using namespace test;

constexpr HighlightStyle colours{{10, 120, 10}, {10, 10, 220}};

TEST(HighlightViewModifier, DrawsItsContentInTheColourForThePointer) {
    OffscreenWindow window(100, 100);
    juce::Component content;
    HighlightViewModifier modifier(content, colours);
    window.show(modifier, {20, 20, 40, 40});
    EXPECT_EQ(environment<MyPrimaryColor>(content), colours.colorDefault);
    moveMouse(window, {40, 40});
    EXPECT_TRUE(modifier.hover());
    EXPECT_EQ(environment<MyPrimaryColor>(content), colours.colorHover);
    moveMouse(window, {5, 5});
    EXPECT_FALSE(modifier.hover());
    EXPECT_EQ(environment<MyPrimaryColor>(content), colours.colorDefault);
}

TEST(HighlightBackgroundViewModifier, DrawsTheGroundInTheColourForThePointer) {
    OffscreenWindow window(100, 100);
    juce::Component content;
    HighlightBackgroundViewModifier modifier(content, colours);
    window.show(modifier, {20, 20, 40, 40});
    EXPECT_EQ(pixelsLike(picture(window), colours.colorDefault), 1600);
    moveMouse(window, {40, 40});
    EXPECT_EQ(pixelsLike(picture(window), colours.colorHover), 1600);
    EXPECT_EQ(environment<MyBackground>(content), colours.colorHover);
}

TEST(HighlightViewModifier, StaysLitWhileThePointerIsOnSomethingInside) {
    OffscreenWindow window(100, 100);
    juce::Component content;
    juce::Component inner;
    content.addAndMakeVisible(inner);
    HighlightViewModifier modifier(content, colours);
    window.show(modifier, {20, 20, 40, 40});
    inner.setBounds(10, 10, 20, 20);
    moveMouse(window, {25, 25});
    moveMouse(window, {40, 40});
    EXPECT_TRUE(modifier.hover());
    moveMouse(window, {90, 90});
    EXPECT_FALSE(modifier.hover());
}

}  // namespace
}  // namespace quillo
