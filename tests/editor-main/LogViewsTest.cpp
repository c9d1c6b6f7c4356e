// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "editor-main/EditorStage.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

/// A rule that answers each note on with a controller.
std::vector<Rule> answer() {
    return {rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(controlChange(0, 7, 1)))};
}

class LogViews : public testing::Test {
protected:
    InOutLogger& logger() { return stage.view().logger(); }
    EntryList& in() { return logger().openedForm().inList(); }
    EntryList& out() { return logger().openedForm().outList(); }
    void open() { click(logger().collapsedForm().arrow()); }

    /// Plays so many notes, numbered in their velocity and note, a cycle each.
    void play(int count) {
        for (int note = 0; note < count; ++note) {
            stage.desk.render(1, {{0x90, static_cast<std::uint8_t>(note % 128),
                                   static_cast<std::uint8_t>(1 + note / 128)}});
        }
        stage.desk.drain();
    }

    EditorStage stage{answer()};
};

TEST_F(LogViews, AreCollapsedAndEmptyAtFirst) {
    EXPECT_TRUE(logger().collapsed());
    EXPECT_TRUE(logger().collapsedForm().isVisible());
    EXPECT_FALSE(logger().openedForm().isVisible());
    EXPECT_EQ(logger().collapsedForm().inText(), "");
    EXPECT_EQ(logger().collapsedForm().outText(), "");
}

TEST_F(LogViews, TheCollapsedFormShowsTheNewestEntries) {
    stage.render({{0x90, 60, 100}, {0xB0, 1, 2}});
    EXPECT_EQ(logger().collapsedForm().inText(), "[0] b0 01 02");
    EXPECT_EQ(logger().collapsedForm().outText(), "[0] b0 01 02");
    stage.render({{0x90, 61, 100}});
    EXPECT_EQ(logger().collapsedForm().inText(), "[512] 90 3d 64");
    EXPECT_EQ(logger().collapsedForm().outText(), "[512] b0 07 01");
}

TEST_F(LogViews, AnEntryThatIsTooLongForTheCollapsedFormIsItsTooltip) {
    auto& form = logger().collapsedForm();
    stage.render({{0xB0, 1, 2}});
    const auto left = form.getLocalBounds().getCentre().translated(-20, 0);
    const auto right = form.getLocalBounds().getCentre().translated(20, 0);
    stage.view().setSize(820, 640);
    EXPECT_EQ(form.tooltipAt(left), "");
    EXPECT_EQ(form.tooltipAt(right), "");
    stage.view().setSize(200, 200);
    EXPECT_EQ(form.tooltipAt({60, 15}), "[0] b0 01 02");
    EXPECT_EQ(form.tooltipAt({190, 15}), "[0] b0 01 02");
}

TEST_F(LogViews, TheArrowOpensAndCollapsesThem) {
    const auto collapsed = logger().getHeight();
    open();
    EXPECT_FALSE(logger().collapsed());
    EXPECT_TRUE(logger().openedForm().isVisible());
    EXPECT_FALSE(logger().collapsedForm().isVisible());
    EXPECT_GT(logger().getHeight(), collapsed);
    click(logger().openedForm().arrow());
    EXPECT_TRUE(logger().collapsed());
    EXPECT_EQ(logger().getHeight(), collapsed);
}

TEST_F(LogViews, TheyFillWhileTheyAreCollapsed) {
    play(3);
    open();
    EXPECT_EQ(in().rows(), 3);
    EXPECT_EQ(in().text(0), "[0] 90 00 01");
    EXPECT_EQ(in().text(2), "[2] 90 02 01");
    EXPECT_EQ(in().text(3), "");
    EXPECT_EQ(out().rows(), 3);
    EXPECT_EQ(out().text(2), "[2] b0 07 01");
}

TEST_F(LogViews, After150EventsThe51stIsTheFirstOf100) {
    open();
    play(150);
    EXPECT_EQ(in().rows(), 100);
    EXPECT_EQ(in().text(0), "[50] 90 32 01");
    EXPECT_EQ(in().text(99), "[149] 90 15 02");
}

TEST_F(LogViews, AFloodBetweenTwoDrainsLeavesTheNewest100) {
    open();
    play(10'000);
    EXPECT_EQ(in().rows(), 100);
    EXPECT_EQ(in().text(99).upToFirstOccurrenceOf(" ", false, false), "[9999]");
    EXPECT_EQ(out().rows(), 100);
    EXPECT_EQ(out().text(99), "[9999] b0 07 01");
}

TEST_F(LogViews, ClearEmptiesBothAndTheNextEventIsTheOnlyRow) {
    open();
    play(2);
    click(logger().openedForm().clearButton());
    EXPECT_EQ(in().rows(), 0);
    EXPECT_EQ(out().rows(), 0);
    stage.render({{0x90, 60, 100}});
    EXPECT_EQ(in().rows(), 1);
    EXPECT_EQ(in().text(0), "[2] 90 3c 64");
    EXPECT_EQ(out().rows(), 1);
}

TEST_F(LogViews, OpenedOrNotTheyAreCollapsedInTheNextEditor) {
    open();
    EditorStage next;
    EXPECT_TRUE(next.view().logger().collapsed());
}

}  // namespace
}  // namespace quillo
