// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/EditorWindow.hpp"

#include <gtest/gtest.h>

#include "programs/editor/Desk.hpp"

namespace quillo {
namespace {

class EditorWindowTest : public testing::Test {
protected:
    Desk desk{{}};
    int closed = 0;
    EditorWindow window{desk.view(), [this] { ++closed; }};
};

TEST_F(EditorWindowTest, OpensWithRoomForTwoWholeCardsAndTheLogs) {
    EXPECT_TRUE(desk.view().isShowing());
    EXPECT_EQ(desk.view().getLocalBounds(), juce::Rectangle<int>(820, 640));
    desk.view().logger().toggle();
    desk.view().logger().advance(InOutLogger::movement);
    for (int card = 0; card < 2; ++card) {
        desk.view().editor().addNotesAsPlayed();
        auto& shown = *desk.view().card(desk.view().editor().rules().back().id);
        auto& list = desk.view().list();
        EXPECT_TRUE(list.getLocalBounds().contains(list.getLocalArea(&shown, shown.getLocalBounds())));
    }
}

TEST_F(EditorWindowTest, HandsTheViewTheKeysThatNothingHasUsed) {
    EXPECT_TRUE(window.keyPressed(juce::KeyPress('z', juce::ModifierKeys::commandModifier, 0)));
    EXPECT_FALSE(window.keyPressed(juce::KeyPress('x', juce::ModifierKeys::commandModifier, 0)));
}

TEST_F(EditorWindowTest, LeavesClosingToItsOwner) {
    window.userTriedToCloseWindow();
    EXPECT_EQ(closed, 1);
    EXPECT_TRUE(window.isVisible());
}

}  // namespace
}  // namespace quillo
