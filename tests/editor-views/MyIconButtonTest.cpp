// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyIconButton.hpp"

#include <gtest/gtest.h>

#include "editor/Environment.hpp"
#include "support/JuceEvents.hpp"
#include "support/OffscreenWindow.hpp"
#include "support/Pictures.hpp"

namespace quillo {
namespace {

using namespace test;

struct IconButtonDesk {
    OffscreenWindow window{100, 100};
    int acts = 0;
    MyIconButton button{"Undo", IconName::undo, [this] { ++acts; }};

    IconButtonDesk() { window.show(button, {20, 20, button.preferredWidth(), button.preferredHeight()}); }
};

TEST(MyIconButton, ActsOnAClickAndOnKeys) {
    IconButtonDesk desk;
    click(desk.button);
    desk.button.grabKeyboardFocus();
    key(desk.window, juce::KeyPress::spaceKey);
    key(desk.window, juce::KeyPress::returnKey);
    EXPECT_EQ(desk.acts, 3);
}

TEST(MyIconButton, IsDrawnInThePrimaryColour) {
    IconButtonDesk desk;
    const auto colour = Palette().triggerInput;
    EXPECT_EQ(pixelsLike(picture(desk.button, 3), colour), 0);
    desk.window.set<MyPrimaryColor>(colour);
    EXPECT_GT(pixelsLike(picture(desk.button, 3), colour), 50);
}

TEST(MyIconButton, IsPalerWhileItIsDisabled) {
    IconButtonDesk desk;
    const auto colour = environment<MyPrimaryColor>(desk.button);
    EXPECT_GT(pixelsLike(picture(desk.button, 3), colour), 50);
    desk.button.setEnabled(false);
    EXPECT_EQ(pixelsLike(picture(desk.button, 3), colour), 0);
}

TEST(MyIconButton, ChangesItsIcon) {
    IconButtonDesk desk;
    const auto before = picture(desk.button);
    desk.button.setIcon(IconName::redo);
    EXPECT_FALSE(sameSight(before, picture(desk.button)));
}

TEST(MyIconButton, SaysWhatItDoes) {
    IconButtonDesk desk;
    EXPECT_EQ(desk.button.getTooltip(), "Undo");
    EXPECT_EQ(desk.button.getAccessibilityHandler()->getTitle(), "Undo");
    EXPECT_EQ(desk.button.getAccessibilityHandler()->getRole(), juce::AccessibilityRole::button);
}

}  // namespace
}  // namespace quillo
