// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "editor-main/EditorStage.hpp"
#include "support/Pictures.hpp"
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
    void open() {
        click(logger().collapsedForm().arrow());
        logger().advance(InOutLogger::movement);
    }
    void collapse() {
        click(logger().openedForm().arrow());
        logger().advance(InOutLogger::movement);
    }
    void scrollUp(EntryList& list) { wheel(list, 1); }
    void pressIn(EntryList& list, int code) {
        findBelow<juce::ListBox>(list)->grabKeyboardFocus();
        key(stage.window, code);
    }
    static juce::String lastOf(EntryList& list) { return list.text(list.rows() - 1); }

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

TEST_F(LogViews, InANarrowWindowTheCollapsedFormShowsTheBytesWithoutTheTime) {
    auto& form = logger().collapsedForm();
    stage.desk.render(1'000'000'000);
    stage.render({{0xB0, 1, 2}});
    stage.view().setSize(320, 480);
    EXPECT_EQ(form.inText(), "b0 01 02");
    EXPECT_EQ(form.outText(), "b0 01 02");
    EXPECT_EQ(form.tooltipAt({100, 15}), "[1000000000] b0 01 02");
    stage.view().setSize(200, 200);
    EXPECT_LE(entryFont().getStringWidth("b0 01 02"), 64) << "There is room for it in the narrowest.";
    stage.view().setSize(820, 640);
    EXPECT_EQ(form.inText(), "[1000000000] b0 01 02");
}

TEST_F(LogViews, ASelectedRowStaysInSightWhenTheListIsMadeLower) {
    open();
    play(100);
    pressIn(in(), juce::KeyPress::upKey);
    const auto height = in().getHeight();
    in().setSize(in().getWidth(), height / 2);
    EXPECT_TRUE(in().getLocalBounds().contains(in().rowArea(99)));
    EXPECT_EQ(in().textToCopy(), in().text(99));
}

TEST_F(LogViews, TheArrowOpensAndCollapsesThem) {
    const auto collapsed = logger().getHeight();
    open();
    EXPECT_FALSE(logger().collapsed());
    EXPECT_TRUE(logger().openedForm().isVisible());
    EXPECT_FALSE(logger().collapsedForm().isVisible());
    EXPECT_GT(logger().getHeight(), collapsed);
    collapse();
    EXPECT_TRUE(logger().collapsed());
    EXPECT_TRUE(logger().collapsedForm().isVisible());
    EXPECT_FALSE(logger().openedForm().isVisible());
    EXPECT_EQ(logger().getHeight(), collapsed);
}

TEST_F(LogViews, OpeningAndCollapsingMoveTheirUpperEdgeFromOneHeightToTheOther) {
    const auto collapsed = logger().getHeight();
    click(logger().collapsedForm().arrow());
    EXPECT_EQ(logger().getHeight(), collapsed);
    EXPECT_TRUE(logger().openedForm().isVisible());
    std::vector<int> heights;
    for (int part = 0; part < 4; ++part) {
        logger().advance(InOutLogger::movement / 4);
        heights.push_back(logger().getHeight());
        EXPECT_EQ(logger().getBottom(), stage.view().getHeight());
        EXPECT_EQ(stage.view().list().getBottom(), logger().getY());
    }
    const auto way = heights[3] - collapsed;
    EXPECT_NEAR(heights[0], collapsed + way * 0.15625, 1);
    EXPECT_NEAR(heights[1], collapsed + way * 0.5, 1);
    EXPECT_NEAR(heights[2], collapsed + way * 0.84375, 1);
    click(logger().openedForm().arrow());
    logger().advance(InOutLogger::movement / 2);
    EXPECT_EQ(logger().getHeight(), heights[1]);
    EXPECT_TRUE(logger().openedForm().isVisible()) << "It is seen until it has left.";
    click(logger().openedForm().arrow());
    logger().advance(InOutLogger::movement / 2);
    EXPECT_EQ(logger().getHeight(), heights[3]) << "A movement may turn back.";
}

TEST_F(LogViews, TheRingAroundTheArrowLeavesRoomBesideIt) {
    open();
    const auto labels = in().getX();
    EXPECT_LE(logger().openedForm().arrow().getRight() + 4, labels);
    EXPECT_LE(logger().collapsedForm().arrow().getRight() + 4, labels);
}

TEST_F(LogViews, TheKeyboardStaysWithTheArrow) {
    logger().collapsedForm().arrow().grabKeyboardFocus();
    key(stage.window, juce::KeyPress::returnKey);
    logger().advance(InOutLogger::movement);
    EXPECT_TRUE(logger().openedForm().arrow().hasKeyboardFocus(false));
    key(stage.window, juce::KeyPress::returnKey);
    logger().advance(InOutLogger::movement);
    EXPECT_TRUE(logger().collapsedForm().arrow().hasKeyboardFocus(false));
}

TEST_F(LogViews, TheHeightOfTheOpenedLogsFollowsTheWindow) {
    open();
    const auto share = [this] {
        const auto room = stage.view().getHeight() - stage.view().header().getHeight();
        return static_cast<double>(logger().getHeight()) / room;
    };
    EXPECT_NEAR(share(), 0.3, 0.01);
    stage.view().setSize(820, 1200);
    EXPECT_NEAR(share(), 0.3, 0.01);
    stage.view().setSize(820, 200);
    EXPECT_GE(logger().getHeight(), 77);
    EXPECT_GE(stage.view().list().getHeight(), 77);
}

TEST_F(LogViews, TheirUpperEdgeIsDraggedOrMovedByTheArrows) {
    open();
    const auto height = logger().getHeight();
    auto& edge = logger().upperEdge();
    drag(edge, centre(edge), centre(edge).translated(0, -100));
    EXPECT_EQ(logger().getHeight(), height + 100);
    edge.grabKeyboardFocus();
    key(stage.window, juce::KeyPress::upKey);
    EXPECT_EQ(logger().getHeight(), height + 116);
    key(stage.window, juce::KeyPress::downKey);
    key(stage.window, juce::KeyPress::downKey);
    EXPECT_EQ(logger().getHeight(), height + 84);
    drag(edge, centre(edge), {centre(edge).x, -5000});
    EXPECT_EQ(stage.view().list().getHeight(), 60);
    collapse();
    open();
    EXPECT_EQ(stage.view().list().getHeight(), 60) << "What was chosen is kept.";
    EXPECT_FALSE(edge.getBounds().isEmpty());
    collapse();
    EXPECT_FALSE(edge.isVisible());
}

TEST_F(LogViews, InANarrowWindowTheListsAreStackedAndShowWholeLines) {
    open();
    EXPECT_EQ(in().getY(), out().getY());
    stage.view().setSize(320, 480);
    EXPECT_GT(out().getY(), in().getBottom());
    EXPECT_EQ(in().getWidth(), out().getWidth());
    EXPECT_GE(in().getWidth(), 310);
    EXPECT_GE(in().getHeight(), 5 * 15);
    EXPECT_NEAR(in().getHeight(), out().getHeight(), 1);
    stage.desk.render(1'000'000'000);
    stage.render({{0xE0, 0x12, 0x34}});
    EXPECT_EQ(lastOf(in()), "[1000000000] e0 12 34");
    EXPECT_EQ(in().tooltip(in().rows() - 1), "") << "It is not cut.";
    in().setSize(100, 60);
    EXPECT_EQ(in().tooltip(in().rows() - 1), lastOf(in())) << "Now it is.";
}

TEST_F(LogViews, TheNewestStaysInSightWhileItIs) {
    open();
    for (int round = 0; round < 3; ++round) {
        play(70);
        EXPECT_TRUE(in().getLocalBounds().contains(in().rowArea(in().rows() - 1)));
    }
    EXPECT_FALSE(in().isHeld());
}

TEST_F(LogViews, WhoScrollsUpReadsOnUntilTheEndIsInSightAgain) {
    open();
    play(100);
    scrollUp(in());
    ASSERT_TRUE(in().isHeld());
    const auto place = in().rowArea(0);
    play(250);
    EXPECT_EQ(in().text(0), "[0] 90 00 01");
    EXPECT_EQ(lastOf(in()), "[99] 90 63 01");
    EXPECT_EQ(in().rowArea(0), place);
    EXPECT_EQ(lastOf(out()).upToFirstOccurrenceOf(" ", false, false), "[349]") << "Each list for itself.";
    wheel(in(), -100);
    EXPECT_FALSE(in().isHeld());
    EXPECT_EQ(lastOf(in()).upToFirstOccurrenceOf(" ", false, false), "[349]");
    EXPECT_TRUE(in().getLocalBounds().contains(in().rowArea(99)));
}

TEST_F(LogViews, AHeldListSaysSo) {
    open();
    play(100);
    const auto titlePixels = [this] {
        const auto title = in().getBounds().withHeight(18).withBottomY(in().getY());
        return pixelsLike(picture(logger().openedForm(), 2), Palette().secondaryText, title * 2);
    };
    const auto before = titlePixels();
    scrollUp(in());
    EXPECT_GT(titlePixels(), 3 * before);
    pressIn(in(), juce::KeyPress::endKey);
    EXPECT_EQ(titlePixels(), before);
}

TEST_F(LogViews, EndShowsTheNewestAndAnEmptiedLogIsShownAtOnce) {
    open();
    play(100);
    scrollUp(in());
    play(10);
    pressIn(in(), juce::KeyPress::endKey);
    EXPECT_FALSE(in().isHeld());
    EXPECT_EQ(lastOf(in()), "[109] 90 09 01");
    scrollUp(in());
    play(1);
    collapse();
    open();
    EXPECT_EQ(lastOf(in()), "[110] 90 00 01") << "What is opened again shows the newest.";
    scrollUp(in());
    click(logger().openedForm().clearButton());
    EXPECT_EQ(in().rows(), 0);
    EXPECT_FALSE(in().isHeld());
}

TEST_F(LogViews, SelectedRowsAreHeldAndCopiedAndAllOfThemWithoutASelection) {
    open();
    play(4);
    EXPECT_EQ(in().textToCopy(), "[0] 90 00 01\n[1] 90 01 01\n[2] 90 02 01\n[3] 90 03 01");
    click(in(), in().rowArea(2).getCentre());
    play(1);
    EXPECT_TRUE(in().isHeld());
    EXPECT_EQ(in().rows(), 4);
    EXPECT_EQ(in().textToCopy(), "[2] 90 02 01");
    pressIn(in(), juce::KeyPress::escapeKey);
    EXPECT_EQ(in().rows(), 5);
    pressIn(in(), juce::KeyPress::upKey);
    EXPECT_EQ(in().textToCopy(), "[4] 90 00 01") << "The arrows begin at the newest.";
}

TEST_F(LogViews, AListWithTheKeyboardIsMarked) {
    open();
    const auto before = picture(in());
    findBelow<juce::ListBox>(in())->grabKeyboardFocus();
    const auto palette = Palette();
    EXPECT_GT(pixelsLike(picture(in()), palette.primaryText),
              pixelsLike(before, palette.primaryText) + in().getWidth());
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
