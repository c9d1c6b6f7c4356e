// SPDX-License-Identifier: GPL-3.0-or-later
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "editor-main/EditorStage.hpp"
#include "editor/Style.hpp"
#include "support/Pictures.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

/// A rule whose echoes of every note leave a second later.
std::vector<Rule> echo() {
    return {rule(onNoteOn(any, any, PassThroughV2::EatMatching),
                 send(protocol(StatusV2::noteOn, channel(3), triggerByte, triggerByte), 1000), "Echo")};
}

class WhatWaits : public testing::Test {
protected:
    static constexpr std::uint32_t second = static_cast<std::uint32_t>(defaultSampleRate);

    InOutLogger& logger() { return stage.view().logger(); }
    OpenedLogger& opened() { return logger().openedForm(); }
    WaitingList& list() { return opened().waitingList(); }

    /// Opens the logs at this size, with what waits in sight.
    void open(juce::Point<int> size = {820, 640}) {
        stage.view().setSize(size.x, size.y);
        logger().toggle();
        logger().advance(InOutLogger::movement);
        if (opened().waitingTitle().isVisible()) {
            click(opened().waitingTitle());
        }
        look();
    }

    /// Plays notes a tenth of a second after each other: 60, 61 and so on.
    void play(int notes) {
        for (int note = 0; note < notes; ++note) {
            stage.desk.render(second / 10, {{0x90, static_cast<std::uint8_t>(60 + note), 80}});
        }
        look();
    }

    /// Lets the render thread answer, which takes it a few samples.
    void look() {
        for (int block = 0; block < 50; ++block) {
            stage.desk.drain();
            stage.desk.render(1);
        }
        stage.desk.drain();
    }

    std::vector<std::string> texts() {
        std::vector<std::string> texts;
        for (int row = 0; row < list().rows(); ++row) {
            texts.push_back(list().text(row).toStdString());
        }
        return texts;
    }

    void press(int code) {
        findBelow<juce::ListBox>(list())->grabKeyboardFocus();
        key(stage.window, code);
    }

    EditorStage stage{echo()};
};

TEST_F(WhatWaits, IsListedWithItsTimeToGoItsBytesAndItsRule) {
    open();
    play(3);
    EXPECT_THAT(texts(), ElementsAre("0.69 s 93 3c 50 Echo", "0.79 s 93 3d 50 Echo", "0.89 s 93 3e 50 Echo"));
    EXPECT_EQ(opened().waitingTitle().getButtonText(), "Waiting: 3");
    stage.desk.render(second / 2);
    look();
    EXPECT_THAT(texts(), ElementsAre("0.19 s 93 3c 50 Echo", "0.29 s 93 3d 50 Echo", "0.39 s 93 3e 50 Echo"));
    stage.desk.render(second);
    look();
    EXPECT_THAT(texts(), IsEmpty());
    EXPECT_EQ(opened().waitingTitle().getButtonText(), "Waiting: 0");
}

TEST_F(WhatWaits, IsListedOnlyWhileTheListIsInSight) {
    play(1);
    EXPECT_TRUE(stage.desk.session().model()->waiting().empty());
    open({500, 250});
    EXPECT_EQ(list().rows(), 1);
    click(opened().outTitle());
    look();
    EXPECT_TRUE(stage.desk.session().model()->waiting().empty());
    click(opened().waitingTitle());
    look();
    EXPECT_EQ(list().rows(), 1);
    logger().toggle();
    logger().advance(InOutLogger::movement);
    look();
    EXPECT_TRUE(stage.desk.session().model()->waiting().empty());
}

TEST_F(WhatWaits, IsNotListedWhileTheWindowIsHidden) {
    open();
    play(1);
    stage.window.setVisible(false);
    stage.view().advance(0);
    look();
    EXPECT_TRUE(stage.desk.session().model()->waiting().empty());
    stage.window.setVisible(true);
    stage.view().advance(0);
    look();
    EXPECT_EQ(list().rows(), 1);
}

TEST_F(WhatWaits, IsCountedInTheCollapsedBarWhileAnythingWaits) {
    auto& bar = logger().collapsedForm();
    EXPECT_EQ(bar.waitingText(), "");
    play(2);
    EXPECT_EQ(bar.waitingText(), "Waiting: 2");
    stage.desk.render(2 * second);
    look();
    EXPECT_EQ(bar.waitingText(), "");
}

TEST_F(WhatWaits, AClickOnItsCountLeavesTheKeyboardToTheHost) {
    auto& bar = logger().collapsedForm();
    play(1);
    click(*findBelow<juce::Label>(bar));
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr) << EditorStage::focus();
}

TEST_F(WhatWaits, DoesNotMoveTheEntriesOfTheCollapsedBarWhereThereIsRoom) {
    auto& bar = logger().collapsedForm();
    const auto labels = [&] {
        return boundsOfPixelsLike(picture(bar), Palette().secondaryText, bar.getLocalBounds());
    };
    const auto before = labels();
    play(1);
    stage.desk.session().model()->clearInLog();
    EXPECT_EQ(bar.waitingText(), "Waiting: 1");
    EXPECT_EQ(labels(), before);
}

TEST_F(WhatWaits, TakesThePlaceOfOutInTheNarrowestCollapsedBar) {
    stage.view().setSize(200, 200);
    auto& bar = logger().collapsedForm();
    stage.render({{0xB0, 1, 2}});
    EXPECT_EQ(bar.tooltipAt({190, 15}), "[0] b0 01 02") << "Out:";
    stage.render({{0x90, 60, 80}});
    EXPECT_EQ(bar.inText(), "90 3c 50");
    EXPECT_EQ(bar.tooltipAt({100, 15}), "[512] 90 3c 50");
    EXPECT_EQ(bar.tooltipAt({190, 15}), "[512] 90 3c 50") << "Out: is not there.";
    EXPECT_GT(pixelsLike(picture(bar, 3), Palette().delayInput), 100);
}

TEST_F(WhatWaits, ACrossCancelsItsOutputAndNoOther) {
    open();
    play(3);
    click(list(), list().crossArea(1).getCentre());
    look();
    EXPECT_THAT(texts(), ElementsAre("0.69 s 93 3c 50 Echo", "0.89 s 93 3e 50 Echo"));
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr) << "The host has its keyboard.";
    stage.sent.clear();
    stage.desk.render(2 * second);
    EXPECT_EQ(stage.sent, (std::vector<std::vector<std::uint8_t>>{{0x93, 60, 80}, {0x93, 62, 80}}));
}

TEST_F(WhatWaits, TheSecondClickOfTwoOnACrossDoesNotCancelWhatHasMovedThere) {
    open();
    play(3);
    const auto cross = list().crossArea(0).getCentre();
    click(list(), cross);
    look();
    ASSERT_EQ(list().rows(), 2);
    mouse(list(), cross, juce::ModifierKeys::leftButtonModifier);
    mouse(list(), cross, {});
    look();
    EXPECT_EQ(list().rows(), 2);
    click(list(), cross);
    look();
    EXPECT_EQ(list().rows(), 1);
}

TEST_F(WhatWaits, OneOfTwoEqualOutputsIsCancelled) {
    open();
    stage.desk.render(16, {{0x90, 60, 80}, {0x90, 60, 80}});
    look();
    ASSERT_EQ(list().rows(), 2);
    click(list(), list().crossArea(0).getCentre());
    look();
    EXPECT_EQ(list().rows(), 1);
    stage.sent.clear();
    stage.desk.render(2 * second);
    EXPECT_EQ(stage.sent, (std::vector<std::vector<std::uint8_t>>{{0x93, 60, 80}}));
}

TEST_F(WhatWaits, ClicksBesideTheCrossesCancelNothing) {
    open();
    play(2);
    click(list(), list().rowArea(0).getCentre());
    click(list(), {list().crossArea(0).getCentreX(), list().getHeight() - 6});
    look();
    EXPECT_EQ(list().rows(), 2);
}

TEST_F(WhatWaits, KeysChooseAnOutputCancelItAndGoOnToTheNext) {
    open();
    play(4);
    press(juce::KeyPress::downKey);
    press(juce::KeyPress::downKey);
    press(juce::KeyPress::deleteKey);
    press(juce::KeyPress::backspaceKey);
    look();
    EXPECT_THAT(texts(), ElementsAre("0.59 s 93 3c 50 Echo", "0.89 s 93 3f 50 Echo"));
    press(juce::KeyPress::deleteKey);
    press(juce::KeyPress::deleteKey);
    look();
    EXPECT_THAT(texts(), IsEmpty()) << "After the last one, the one before it is chosen.";
    press(juce::KeyPress::deleteKey);
    EXPECT_EQ(list().chosen(), std::nullopt);
}

TEST_F(WhatWaits, TheChosenOneStaysChosenWhereverItStandsAndIsGoneWhenItLeaves) {
    open();
    play(3);
    press(juce::KeyPress::downKey);
    press(juce::KeyPress::downKey);
    const auto chosen = list().chosen();
    stage.desk.render(second * 7 / 10);
    look();
    ASSERT_THAT(texts(), ElementsAre("0.09 s 93 3d 50 Echo", "0.19 s 93 3e 50 Echo"));
    EXPECT_EQ(list().chosen(), chosen);
    stage.desk.render(second / 10);
    look();
    EXPECT_EQ(list().chosen(), std::nullopt);
    press(juce::KeyPress::deleteKey);
    look();
    EXPECT_EQ(list().rows(), 1) << "What is not chosen is not cancelled.";
    press(juce::KeyPress::downKey);
    press(juce::KeyPress::escapeKey);
    EXPECT_EQ(list().chosen(), std::nullopt);
}

TEST_F(WhatWaits, CancelAllCancelsAll) {
    open();
    play(5);
    click(opened().cancelAllButton());
    look();
    EXPECT_EQ(list().rows(), 0);
    stage.sent.clear();
    stage.desk.render(2 * second);
    EXPECT_TRUE(stage.sent.empty());
}

TEST_F(WhatWaits, SharesItsPlaceWithOutWhereThereIsLessWidth) {
    open({820, 640});
    EXPECT_TRUE(opened().outList().isVisible());
    EXPECT_TRUE(list().isVisible());
    EXPECT_GT(list().getX(), opened().outList().getRight());
    EXPECT_FALSE(opened().waitingTitle().isVisible());
    for (const auto size : {juce::Point(500, 250), juce::Point(320, 480), juce::Point(200, 200)}) {
        stage.view().setSize(size.x, size.y);
        click(opened().outTitle());
        EXPECT_TRUE(opened().outList().isVisible());
        EXPECT_FALSE(list().isVisible());
        EXPECT_FALSE(opened().cancelAllButton().isVisible());
        click(opened().waitingTitle());
        EXPECT_FALSE(opened().outList().isVisible());
        EXPECT_EQ(list().getBounds(), opened().outList().getBounds());
        EXPECT_TRUE(opened().cancelAllButton().isVisible());
    }
}

TEST_F(WhatWaits, SaysInTheCountsColourThatItIsNotInSight) {
    open({500, 250});
    click(opened().outTitle());
    const auto mint = [&] { return pixelsLike(picture(opened().waitingTitle(), 3), Palette().delayInput); };
    EXPECT_EQ(mint(), 0);
    play(1);
    EXPECT_GT(mint(), 50);
}

TEST_F(WhatWaits, ALongMessageLeavesNoRoomForTheNameAndIsATooltip) {
    open();
    stage.editor().add(MIDIRuleType::OutputType{OutputEntryType::NoteOn});
    auto rules = echo();
    rules[0].output.message = systemExclusive(std::vector<std::uint8_t>(40, 0x11));
    rules[0].name = "Dump";
    stage.desk.session().install(rules);
    play(1);
    ASSERT_EQ(list().rows(), 1);
    EXPECT_EQ(list().tooltip(0), list().text(0));
    EXPECT_TRUE(list().getLocalBounds().contains(list().crossArea(0)));
}

TEST_F(WhatWaits, AWholeRowHasNoTooltip) {
    open();
    play(1);
    EXPECT_EQ(list().tooltip(0), "");
}

TEST_F(WhatWaits, RowsAreReadToThoseWhoDoNotSeeThem) {
    open();
    play(1);
    auto* box = findBelow<juce::ListBox>(list());
    EXPECT_EQ(box->getTitle(), "Waiting");
    EXPECT_EQ(box->getModel()->getNameForRow(0), "0.89 s 93 3c 50 Echo; Delete cancels it");
    EXPECT_EQ(opened().waitingTitle().getTitle(), "Waiting: 1");
    EXPECT_EQ(opened().cancelAllButton().getTitle(), "Cancel all");
}

TEST_F(WhatWaits, ManyAreListedAndTheLastCanBeCancelled) {
    open();
    for (int block = 0; block < 80; ++block) {
        stage.desk.render(1, std::vector<std::vector<std::uint8_t>>(100, {0x90, 60, 80}));
    }
    look();
    ASSERT_EQ(list().rows(), 8000);
    EXPECT_EQ(opened().waitingTitle().getButtonText(), "Waiting: 8,000");
    press(juce::KeyPress::downKey);
    press(juce::KeyPress::endKey);
    press(juce::KeyPress::deleteKey);
    look();
    EXPECT_EQ(list().rows(), 7999);
}

}  // namespace
}  // namespace quillo
