// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyTextButton.hpp"

#include <gtest/gtest.h>

#include "editor/Environment.hpp"
#include "support/JuceEvents.hpp"
#include "support/OffscreenWindow.hpp"

namespace quillo {
namespace {

using namespace test;

struct TextButtonDesk {
    OffscreenWindow window{200, 100};
    int acts = 0;
    MyTextButton button{"Send", [this] { ++acts; }};

    TextButtonDesk() { window.show(button, {20, 20, button.preferredWidth(), button.preferredHeight()}); }
};

TEST(MyTextButton, ActsOnAClick) {
    TextButtonDesk desk;
    click(desk.button);
    EXPECT_EQ(desk.acts, 1);
    EXPECT_FALSE(desk.button.hasKeyboardFocus(true)) << "The keyboard stays with the host.";
}

TEST(MyTextButton, ActsOnSpaceAndReturnWhileItHasTheFocus) {
    TextButtonDesk desk;
    desk.button.grabKeyboardFocus();
    ASSERT_TRUE(desk.button.hasKeyboardFocus(false));
    EXPECT_TRUE(key(desk.window, juce::KeyPress::spaceKey));
    EXPECT_TRUE(key(desk.window, juce::KeyPress::returnKey));
    EXPECT_EQ(desk.acts, 2);
    EXPECT_FALSE(key(desk.window, 'a'));
}

}  // namespace
}  // namespace quillo
