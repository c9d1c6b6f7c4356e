// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyTextButton.hpp"

#include <gtest/gtest.h>

#include "editor/Environment.hpp"
#include "editor/Style.hpp"
#include "support/JuceEvents.hpp"
#include "support/OffscreenWindow.hpp"
#include "support/Pictures.hpp"

namespace quillo {
namespace {

using namespace test;

struct TextButtonDesk {
    OffscreenWindow window{200, 100};
    int acts = 0;
    MyTextButton button{"Send", [this] { ++acts; }};

    TextButtonDesk() { window.show(button, {20, 20, button.preferredWidth(), button.preferredHeight()}); }
};

TEST(MyTextButton, ActsOnAClickAndLeavesTheKeyboardAlone) {
    TextButtonDesk desk;
    click(desk.button);
    EXPECT_EQ(desk.acts, 1);
    EXPECT_FALSE(desk.button.hasKeyboardFocus(true));
}

TEST(MyTextButton, IsNotClickedBesideItOrByARelease) {
    TextButtonDesk desk;
    click(desk.window, {5, 5});
    drag(desk.window, desk.button.getBounds().getCentre(), {5, 5});
    EXPECT_EQ(desk.acts, 0);
}

TEST(MyTextButton, ActsOnSpaceAndReturnWhileItHasTheFocus) {
    TextButtonDesk desk;
    desk.button.grabKeyboardFocus();
    ASSERT_TRUE(desk.button.hasKeyboardFocus(false));
    EXPECT_TRUE(key(desk.window, juce::KeyPress::spaceKey));
    EXPECT_TRUE(key(desk.window, juce::KeyPress::returnKey));
    EXPECT_EQ(desk.acts, 2);
}

TEST(MyTextButton, LeavesAllOtherKeysToItsParents) {
    TextButtonDesk desk;
    desk.button.grabKeyboardFocus();
    EXPECT_FALSE(key(desk.window, 'a'));
    EXPECT_FALSE(key(desk.window, juce::KeyPress::upKey));
    EXPECT_EQ(desk.window.unusedKeys().size(), 2U);
}

TEST(MyTextButton, DoesNothingWhileItIsDisabled) {
    TextButtonDesk desk;
    desk.button.setEnabled(false);
    click(desk.button);
    EXPECT_FALSE(desk.button.keyPressed(juce::KeyPress(juce::KeyPress::returnKey)));
    EXPECT_EQ(desk.acts, 0);
}

TEST(MyTextButton, MayBeDeletedByItsAction) {
    OffscreenWindow window(200, 100);
    std::unique_ptr<MyTextButton> button;
    juce::String done;
    button = std::make_unique<MyTextButton>("Delete", [&button, &done, text = juce::String("deleted")] {
        button.reset();
        done = text;
    });
    window.show(*button, {20, 20, 80, 21});
    click(*button);
    EXPECT_EQ(button, nullptr);
    EXPECT_EQ(done, "deleted");
}

TEST(MyTextButton, LightsUpUnderThePointer) {
    TextButtonDesk desk;
    moveMouse(desk.window, {1, 1});
    const auto before = picture(desk.window);
    moveMouse(desk.button, centre(desk.button));
    EXPECT_FALSE(sameSight(before, picture(desk.window)));
    moveMouse(desk.window, {1, 1});
    EXPECT_TRUE(sameSight(before, picture(desk.window)));
}

TEST(MyTextButton, IsDrawnInTheColoursAroundItWhenAccented) {
    TextButtonDesk desk;
    const Palette palette;
    desk.window.set<MyPrimaryColor>(palette.delayInput);
    desk.window.set<MySecondaryColor>(palette.delayInputSecondaryColor);
    EXPECT_EQ(pixelsLike(picture(desk.button, 2), palette.delayInputSecondaryColor), 0);
    desk.button.setAccented(true);
    EXPECT_GT(pixelsLike(picture(desk.button, 2), palette.delayInputSecondaryColor), 100);
    EXPECT_GT(pixelsLike(picture(desk.button, 2), palette.delayInput), 10);
    desk.button.setEnabled(false);
    EXPECT_EQ(pixelsLike(picture(desk.button, 2), palette.delayInput), 0);
}

TEST(MyTextButton, ShowsTheFocus) {
    TextButtonDesk desk;
    const auto before = picture(desk.button);
    desk.button.grabKeyboardFocus();
    EXPECT_FALSE(sameSight(before, picture(desk.button)));
}

TEST(MyTextButton, IsAButtonWithATitleToThoseWhoDoNotSeeIt) {
    TextButtonDesk desk;
    auto* handler = desk.button.getAccessibilityHandler();
    ASSERT_NE(handler, nullptr);
    EXPECT_EQ(handler->getRole(), juce::AccessibilityRole::button);
    EXPECT_EQ(handler->getTitle(), "Send");
}

TEST(MyTextButton, IsAsWideAsItsLabelWants) {
    const MyTextButton narrow("OK", nullptr);
    const MyTextButton wide("Docs / Donate", nullptr);
    EXPECT_GT(wide.preferredWidth(), narrow.preferredWidth());
    EXPECT_EQ(wide.preferredHeight(), style::buttonHeight);
}

}  // namespace
}  // namespace quillo
