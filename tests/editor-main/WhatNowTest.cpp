// SPDX-License-Identifier: GPL-3.0-or-later
// What the events of the logs would do after an edit, as marks on the Out log.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "editor-main/EditorStage.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using Texts = std::vector<std::string>;

class WhatNowInTheEditor : public testing::Test {
protected:
    void open(juce::Point<int> size = {820, 640}) {
        stage = std::make_unique<EditorStage>(
            std::vector{rule(onNoteOn(exactly(60)), send(noteOn(1, 64, 1)), "Echo")}, size);
        click(logger().collapsedForm().arrow());
        logger().advance(InOutLogger::movement);
    }

    InOutLogger& logger() { return stage->view().logger(); }
    OpenedLogger& opened() { return logger().openedForm(); }
    EntryList& out() { return opened().outList(); }
    MyWordButton& button() { return opened().whatNowButton(); }
    void pickNote(const juce::String& note) { stage->pick(field(stage->card().trigger(), "Note"), note); }

    Texts rows() {
        Texts texts;
        for (int row = 0; row < out().rows(); ++row) {
            texts.push_back(out().text(row).toStdString());
        }
        return texts;
    }
    std::string sum() { return opened().sum().isVisible() ? opened().sum().getText().toStdString() : ""; }

    std::unique_ptr<EditorStage> stage;
};

const Texts asSent{"[0] 91 40 01", "[0] 90 3c 64", "[0] 90 3d 64"};

TEST_F(WhatNowInTheEditor, AnEditIsMarkedOnTheOutLogUntilClose) {
    open();
    stage->render({{0x90, 60, 100}, {0x90, 61, 100}});
    pickNote("62 (D3)");
    EXPECT_EQ(rows(), asSent) << "Nobody has asked yet.";
    EXPECT_EQ(sum(), "");
    click(button());
    EXPECT_THAT(rows(), ElementsAre("[0] 91 40 01, would not be sent now", "[0] 90 3c 64", "[0] 90 3d 64"));
    EXPECT_EQ(sum(), "1 would not be sent; 2 alike");
    click(button());
    EXPECT_EQ(rows(), asSent);
    EXPECT_EQ(sum(), "");
}

TEST_F(WhatNowInTheEditor, WhatWouldAndWouldNotBeSentIsSaidInWordsAndFollowsEditsAndUndo) {
    open();
    stage->render({{0x90, 60, 100}, {0x90, 61, 100}});
    click(button());
    EXPECT_EQ(sum(), "Nothing would be different");
    stage->typeInto(field(stage->card().output(), "Velocity"), "2");
    EXPECT_THAT(rows(), ElementsAre("[0] 91 40 01, would not be sent now", "[0] 90 3c 64", "[0] 90 3d 64",
                                    "[0] 91 40 02, would be sent now"));
    EXPECT_EQ(sum(), "1 would be sent, 1 would not; 2 alike");
    stage->editor().duplicate({stage->id(0)});
    EXPECT_EQ(sum(), "2 would be sent, 1 would not; 2 alike");
    stage->press('z', juce::ModifierKeys::commandModifier);
    stage->press('z', juce::ModifierKeys::commandModifier);
    EXPECT_EQ(rows(), asSent);
    EXPECT_EQ(sum(), "Nothing would be different");
}

TEST_F(WhatNowInTheEditor, WhatIsCopiedSaysItToo) {
    open();
    stage->render({{0x90, 60, 100}});
    stage->editor().remove({stage->id(0)});
    click(button());
    EXPECT_EQ(out().textToCopy(), "[0] 91 40 01, would not be sent now\n[0] 90 3c 64");
}

TEST_F(WhatNowInTheEditor, TheButtonSaysWhatItAsks) {
    open();
    EXPECT_EQ(button().getButtonText(), "What now?");
    EXPECT_EQ(button().getTitle(), "What would the last 100 events do now?");
    EXPECT_EQ(button().getTooltip(), "What would the last 100 events do now?");
    click(button());
    EXPECT_EQ(button().getButtonText(), "Close");
    EXPECT_EQ(button().getTitle(), "Close");
}

TEST_F(WhatNowInTheEditor, EscapeEndsItWhereverTheKeyboardIs) {
    open();
    stage->render({{0x90, 60, 100}});
    stage->editor().remove({stage->id(0)});
    click(button());
    juce::Component::unfocusAllComponents();
    EXPECT_TRUE(stage->press(juce::KeyPress::escapeKey)) << "The window's owner hands it over.";
    EXPECT_THAT(rows(), ElementsAre("[0] 91 40 01", "[0] 90 3c 64"));
    EXPECT_FALSE(stage->press(juce::KeyPress::escapeKey)) << "Now it is the host's.";
}

TEST_F(WhatNowInTheEditor, StandsStillWhileTheLogsGoOnAndEndsWhenTheyAreEmptiedOrCollapsed) {
    open();
    stage->render({{0x90, 60, 100}});
    stage->editor().remove({stage->id(0)});
    click(button());
    stage->render({{0x90, 62, 100}});
    EXPECT_THAT(rows(), ElementsAre("[0] 91 40 01, would not be sent now", "[0] 90 3c 64"));
    click(opened().clearButton());
    EXPECT_FALSE(opened().isAskingWhatNow());
    EXPECT_EQ(out().rows(), 0);
    click(button());
    click(opened().arrow());
    logger().advance(InOutLogger::movement);
    EXPECT_FALSE(opened().isAskingWhatNow());
}

TEST_F(WhatNowInTheEditor, TheLogGoesOnWhereItIsWhenItEnds) {
    open();
    stage->render({{0x90, 60, 100}});
    click(button());
    stage->render({{0x90, 62, 100}});
    click(button());
    EXPECT_EQ(rows().back(), "[512] 90 3e 64");
    stage->render({{0x90, 63, 100}});
    EXPECT_EQ(rows().back(), "[1024] 90 3f 64");
}

TEST_F(WhatNowInTheEditor, TheFirstMarkIsInSight) {
    open();
    stage->render({{0x90, 60, 100}});
    for (int count = 0; count < 60; ++count) {
        stage->render({{0xB0, 1, 1}});
    }
    stage->editor().remove({stage->id(0)});
    click(button());
    EXPECT_TRUE(out().getLocalBounds().contains(out().rowArea(0)));
    stage->render();
    EXPECT_TRUE(out().getLocalBounds().contains(out().rowArea(0)));
}

TEST_F(WhatNowInTheEditor, MarkedRowsArePaintedInTheirColours) {
    open();
    stage->render({{0x90, 60, 100}});
    stage->typeInto(field(stage->card().output(), "Velocity"), "2");
    const auto hasColour = [this](int row, MyRGB colour) {
        const auto image = out().createComponentSnapshot(out().rowArea(row));
        const juce::Colour wanted(colour.r, colour.g, colour.b);
        for (int x = 0; x < image.getWidth(); ++x) {
            for (int y = 0; y < image.getHeight(); ++y) {
                const auto pixel = image.getPixelAt(x, y);
                if (pixel.getPerceivedBrightness() > 0.5F &&
                    std::abs(pixel.getHue() - wanted.getHue()) < 0.02F &&
                    pixel.getSaturation() > wanted.getSaturation() / 2) {
                    return true;
                }
            }
        }
        return false;
    };
    const auto green = Palette().midi2dByteInput;
    click(button());
    EXPECT_FALSE(hasColour(0, green));
    EXPECT_TRUE(hasColour(2, green));
    click(button());
    EXPECT_FALSE(hasColour(1, green));
}

TEST_F(WhatNowInTheEditor, ButtonAndSumLieInTheEditorAtEveryWidth) {
    for (const int width : {200, 459, 460, 500, 639, 640, 1200}) {
        SCOPED_TRACE(width);
        open({width, 400});
        click(button());
        EXPECT_EQ(sum(), "Nothing would be different");
        EXPECT_TRUE(opened().getLocalBounds().contains(button().getBounds()));
        EXPECT_TRUE(opened().getLocalBounds().contains(opened().sum().getBounds()));
        EXPECT_EQ(opened().sum().getBottom(), out().getY());
        EXPECT_FALSE(button().getBounds().intersects(opened().sum().getBounds().reduced(0, 4)));
        EXPECT_FALSE(opened().waitingTitle().isVisible() &&
                     button().getBounds().intersects(opened().waitingTitle().getBounds()));
    }
}

TEST_F(WhatNowInTheEditor, AClickOnTheSumLeavesTheKeyboardToTheHost) {
    open();
    click(button());
    click(*findBelow<juce::Label>(opened()));
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr) << EditorStage::focus();
}

TEST_F(WhatNowInTheEditor, GoesOutOfSightWithTheOutLog) {
    open({500, 400});
    click(button());
    click(opened().waitingTitle());
    EXPECT_FALSE(button().isVisible());
    EXPECT_EQ(sum(), "");
    click(opened().outTitle());
    EXPECT_EQ(sum(), "Nothing would be different");
}

TEST_F(WhatNowInTheEditor, IsReachedByTheKeyboardAloneFromAFreshWindow) {
    stage = std::make_unique<EditorStage>();
    stage->render({{0x90, 60, 100}});
    ASSERT_TRUE(stage->tabTo("Open the logs"));
    stage->press(juce::KeyPress::returnKey);
    logger().advance(InOutLogger::movement);
    ASSERT_TRUE(stage->tabTo("What would the last 100 events do now?"));
    stage->press(juce::KeyPress::returnKey);
    EXPECT_EQ(sum(), "Nothing would be different");
    EXPECT_EQ(EditorStage::focus(), "Close");
    stage->press(juce::KeyPress::escapeKey);
    EXPECT_EQ(sum(), "");
    EXPECT_EQ(EditorStage::focus(), "What would the last 100 events do now?");
}

}  // namespace
}  // namespace quillo
