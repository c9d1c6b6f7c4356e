// SPDX-License-Identifier: GPL-3.0-or-later
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "editor-main/EditorStage.hpp"
#include "editor/AlertView.hpp"
#include "support/Pictures.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::Contains;

class Panic : public testing::Test {
protected:
    Panic() { stage.desk.render(16, {{0x90, 60, 80}, {0x90, 64, 80}, {0xB1, 64, 127}}); }

    PanicAnswer& answer() { return stage.view().panicAnswer(); }
    Header& header() { return stage.view().header(); }

    /// With the character that a keyboard makes of it.
    void pressPanic() {
        const juce::KeyPress pressed(
            'P', juce::ModifierKeys::commandModifier | juce::ModifierKeys::shiftModifier, 0x10);
        if (!key(stage.window, pressed)) {
            stage.view().keyPressed(pressed);
        }
    }

    /// Lets the render thread do it, and the editor hear of it.
    void look() {
        stage.desk.drain();
        stage.render();
    }

    /// Whether the key ends a note that sounds; its answer is gone again.
    bool panicWorks() {
        stage.desk.render(16, {{0x90, 50, 80}});
        pressPanic();
        look();
        const bool works = answer().words().startsWith("Stopped");
        stage.desk.session().model()->dismissPanicAnswer();
        look();
        pressPanic();
        look();
        return works && answer().words() == "Nothing was sounding";
    }

    EditorStage stage{{rule(onNoteOn(exactly(60)), send(noteOn(3, 72, 1), 5000), "a")}};
};

const juce::String whatItDid = "Stopped 2 notes, let go of 1 pedal, cancelled 1 waiting message";

TEST_F(Panic, TheButtonEndsWhatSoundsAndTheAnswerSaysWhatThatWas) {
    EXPECT_FALSE(answer().isVisible());
    click(header().panicButton());
    look();
    EXPECT_THAT(stage.sent, Contains(std::vector<std::uint8_t>{0x80, 60, 64}));
    EXPECT_THAT(stage.sent, Contains(std::vector<std::uint8_t>{0x80, 64, 64}));
    EXPECT_THAT(stage.sent, Contains(std::vector<std::uint8_t>{0xB1, 64, 0}));
    EXPECT_TRUE(answer().isVisible());
    EXPECT_EQ(answer().words(), whatItDid);
    EXPECT_EQ(stage.desk.session().model()->waitingCount(), 0U);
    click(header().panicButton());
    look();
    EXPECT_EQ(answer().words(), "Nothing was sounding");
}

TEST_F(Panic, TheKeyWorksWhateverHasTheKeyboard) {
    EXPECT_TRUE(panicWorks()) << "nothing";
    header().importButton().grabKeyboardFocus();
    EXPECT_TRUE(panicWorks()) << "a button";
    auto& name = stage.card(0).header();
    stage.beginTyping(name, "b");
    EXPECT_TRUE(panicWorks()) << "what is typed into";
    EXPECT_TRUE(name.isEditable());
    key(stage.window, juce::KeyPress::escapeKey);
}

TEST_F(Panic, TheKeyWorksWhateverIsOpen) {
    EditorStage::openMenu(field(stage.card(0).trigger(), "Type"));
    stage.view().overlay()->grabKeyboardFocus();
    EXPECT_TRUE(panicWorks()) << "a menu";
    stage.view().showImporter();
    stage.view().overlay()->grabKeyboardFocus();
    EXPECT_TRUE(panicWorks()) << "the file browser";
    stage.view().closeOverlay();
    stage.editor().alert("Something.");
    stage.view().overlay()->grabKeyboardFocus();
    EXPECT_TRUE(panicWorks()) << "an alert";
    EXPECT_TRUE(showsAlert(stage.view()));
}

TEST_F(Panic, TheAnswerTakesTheKeyboardFromNobody) {
    auto& velocity = field(stage.card(0).output(), "Velocity");
    stage.beginTyping(velocity, "7");
    pressPanic();
    look();
    EXPECT_TRUE(answer().isVisible());
    EXPECT_TRUE(velocity.hasKeyboardFocus(true));
    type(stage.window, "7");
    key(stage.window, juce::KeyPress::returnKey);
    EXPECT_EQ(velocity.shownText(), "77");
}

TEST_F(Panic, TheAnswerGoesAfterAWhile) {
    pressPanic();
    look();
    stage.view().advance(PanicAnswer::time - 1);
    EXPECT_TRUE(answer().isVisible());
    stage.view().advance(1);
    EXPECT_FALSE(answer().isVisible());
    EXPECT_EQ(stage.desk.session().model()->panicAnswer(), std::nullopt);
}

TEST_F(Panic, AnotherAnswerHasItsOwnTime) {
    pressPanic();
    look();
    stage.view().advance(PanicAnswer::time - 1);
    pressPanic();
    look();
    stage.view().advance(PanicAnswer::time - 1);
    EXPECT_TRUE(answer().isVisible());
}

TEST_F(Panic, TheAnswerStaysUnderThePointerAndWithTheKeyboard) {
    pressPanic();
    look();
    answer().notesEnd().grabKeyboardFocus();
    stage.view().advance(100);
    EXPECT_TRUE(answer().isVisible());
    juce::Component::unfocusAllComponents();
    moveMouse(answer(), {5, 5});
    stage.view().advance(100);
    EXPECT_TRUE(answer().isVisible());
    moveMouse(stage.view(), {5, 5});
    stage.view().advance(100);
    EXPECT_FALSE(answer().isVisible());
}

TEST_F(Panic, ItsCrossAndEscapeDismissTheAnswer) {
    pressPanic();
    look();
    click(answer().closeButton());
    EXPECT_FALSE(answer().isVisible());
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr);
    pressPanic();
    look();
    EXPECT_TRUE(stage.press(juce::KeyPress::escapeKey));
    EXPECT_FALSE(answer().isVisible());
    EXPECT_FALSE(stage.press(juce::KeyPress::escapeKey)) << "Now it is the host's.";
}

TEST_F(Panic, TheKeyboardReachesTheAnswerBehindTheHeaderAndDoesNotGoWithIt) {
    header().moreButton().grabKeyboardFocus();
    pressPanic();
    look();
    key(stage.window, juce::KeyPress::tabKey);
    EXPECT_TRUE(answer().closeButton().hasKeyboardFocus(false));
    key(stage.window, juce::KeyPress::tabKey);
    EXPECT_EQ(EditorStage::focus(), "Let notes end when rules change");
    key(stage.window, juce::KeyPress::spaceKey);
    EXPECT_TRUE(stage.desk.session().notesEndWhenRulesChange());
    stage.press(juce::KeyPress::escapeKey);
    EXPECT_FALSE(answer().isVisible());
    EXPECT_TRUE(header().panicButton().hasKeyboardFocus(false));
}

TEST_F(Panic, WhetherNotesEndWhenRulesChangeIsOffAtFirstAndToggled) {
    pressPanic();
    look();
    auto& box = answer().notesEnd();
    EXPECT_FALSE(box.isTicked());
    click(box);
    EXPECT_TRUE(box.isTicked());
    EXPECT_TRUE(stage.desk.session().notesEndWhenRulesChange());
    stage.desk.render(16, {{0x90, 50, 80}});
    stage.sent.clear();
    stage.editor().duplicate({stage.id(0)});
    look();
    EXPECT_THAT(stage.sent, Contains(std::vector<std::uint8_t>{0x80, 50, 64}));
    click(box);
    EXPECT_FALSE(stage.desk.session().notesEndWhenRulesChange());
}

TEST_F(Panic, AnEditorThatOpensLaterShowsTheSettingAndTheAnswer) {
    stage.desk.session().setNotesEndWhenRulesChange(true);
    pressPanic();
    look();
    QuilloView later(stage.desk.session());
    EXPECT_TRUE(later.panicAnswer().isVisible());
    EXPECT_EQ(later.panicAnswer().words(), whatItDid);
    EXPECT_TRUE(later.panicAnswer().notesEnd().isTicked());
}

TEST_F(Panic, TheAnswerIsWholeInEverySize) {
    pressPanic();
    look();
    for (const auto size :
         {juce::Point(200, 200), juce::Point(320, 480), juce::Point(500, 250), juce::Point(820, 640)}) {
        stage.view().setSize(size.x, size.y);
        EXPECT_TRUE(stage.view().getLocalBounds().contains(answer().getBounds()));
        for (const auto* part :
             std::initializer_list<juce::Component*>{&answer().notesEnd(), &answer().closeButton()}) {
            EXPECT_TRUE(answer().getLocalBounds().reduced(2).contains(part->getBounds())) << size.x;
        }
        EXPECT_FALSE(answer().notesEnd().getBounds().intersects(answer().closeButton().getBounds()));
        EXPECT_EQ(answer().notesEnd().getHeight(),
                  answer().notesEnd().heightFor(answer().notesEnd().getWidth()));
    }
}

TEST_F(Panic, HasAButtonWhereThereIsRoomAndARowInTheMenuWhereThereIsNone) {
    for (int width = 200; width <= 820; ++width) {
        stage.view().setSize(width, 300);
        const auto& button = header().panicButton();
        EXPECT_EQ(button.isVisible(), width >= 248) << width;
        EXPECT_TRUE(button.isVisible() || header().moreButton().isVisible()) << width;
    }
    stage.view().setSize(200, 200);
    click(header().moreButton());
    stage.pickInMenu("Panic");
    look();
    EXPECT_EQ(answer().words(), whatItDid);
}

TEST_F(Panic, PartsHaveNames) {
    pressPanic();
    look();
    EXPECT_EQ(header().panicButton().getTitle(), "Panic");
    EXPECT_EQ(answer().getTitle(), whatItDid);
    EXPECT_EQ(answer().closeButton().getTitle(), "Dismiss");
    const auto* handler = answer().notesEnd().getAccessibilityHandler();
    ASSERT_NE(handler, nullptr);
    EXPECT_TRUE(handler->getCurrentState().isCheckable());
    EXPECT_FALSE(handler->getCurrentState().isChecked());
    EXPECT_EQ(handler->getTitle(), "Let notes end when rules change");
}

}  // namespace
}  // namespace quillo
