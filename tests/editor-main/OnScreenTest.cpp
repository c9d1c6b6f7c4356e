// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "editor-main/EditorStage.hpp"
#include "editor/NewRuleSelector.hpp"
#include "support/Pictures.hpp"

namespace quillo {
namespace {

using namespace test;
using Messages = std::vector<std::vector<std::uint8_t>>;

/// The editor in a window of a real display, used by the events of that display.
class OnScreen : public testing::Test {
protected:
    OnScreen() {
        desk.session().logOutput.also(WithoutDeadline([this](const EventLogEntry& entry) {
            const auto bytes = entry.variants.midi()->message.bytes();
            sent.emplace_back(bytes.begin(), bytes.end());
        }));
        desk.view().addToDesktop(0);
        desk.view().setTopLeftPosition(40, 40);
        desk.view().setVisible(true);
        EXPECT_FALSE(juce::Desktop::getInstance().getDisplays().displays.isEmpty());
        while (!desk.view().isShowing()) {
            settle();
        }
    }
    ~OnScreen() override { desk.view().removeFromDesktop(); }

    /// Lets the display act, and the editor take what comes of it until it has had its effect.
    template <class Effect>
    void act(const std::string& deed, Effect effect) {
        juce::ChildProcess hand;
        ASSERT_TRUE(hand.start("xdotool " + deed));
        ASSERT_TRUE(hand.waitForProcessToFinish(-1));
        ASSERT_EQ(hand.getExitCode(), 0U);
        while (!effect()) {
            settle();
        }
    }

    static std::string moveTo(const juce::Component& view) {
        const auto point = view.getScreenBounds().getCentre();
        return "mousemove " + std::to_string(point.x) + " " + std::to_string(point.y);
    }

    static std::string clickOn(const juce::Component& view) { return moveTo(view) + " click 1"; }

    /// Where nothing lies on the header.
    std::string moveToBareHeader() {
        const auto corner = desk.view().header().getScreenBounds().getPosition();
        return "mousemove " + std::to_string(corner.x + 4) + " " + std::to_string(corner.y + 4);
    }

    Messages sent;
    Desk desk{{}};
};

TEST_F(OnScreen, ARuleIsAddedAndSentByTheEventsOfTheDisplay) {
    auto& view = desk.view();
    act(clickOn(findBelow<NewRuleSelector>(view)->button()), [&] { return view.overlay() != nullptr; });
    act("type pitch", [&] {
        const auto* menu = dynamic_cast<PopupMenuOverlay*>(view.overlay());
        return menu != nullptr && menu->typed() == "pitch";
    });
    act("key Return", [&] { return !view.editor().rules().empty(); });
    EXPECT_EQ(desk.session().processor().rules(),
              std::vector{ruleFromEntry(defaultEntry(OutputEntryType::PitchWheel, 1))});

    desk.render(512);
    sent.clear();
    act(clickOn(view.card(view.editor().rules()[0].id)->buttons().sendButton()),
        [&] { return desk.session().processor().pendingInstantMessages() == 1; });
    desk.render(512);
    desk.drain();
    EXPECT_EQ(sent, (Messages{{0xE0, 0x00, 0x40}}));
    EXPECT_EQ(view.logger().collapsedForm().outText(), "[512] e0 00 40");
}

TEST_F(OnScreen, TheKeyboardGetsInWithoutAClick) {
    auto& view = desk.view();
    act(moveToBareHeader() + " key Tab",
        [&] { return view.header().importButton().hasKeyboardFocus(false); });
    act("key shift+Tab", [&] { return view.logger().hasKeyboardFocus(true); });
    act("key shift+Tab", [&] { return view.list().hasKeyboardFocus(true); });
    act("key shift+Tab shift+Tab shift+Tab",
        [&] { return findBelow<NewRuleSelector>(view)->button().hasKeyboardFocus(false); });
    act("key Return", [&] { return view.overlay() != nullptr; });
    act("type pitch", [&] {
        const auto* menu = dynamic_cast<PopupMenuOverlay*>(view.overlay());
        return menu != nullptr && menu->typed() == "pitch";
    });
    act("key Return", [&] { return !view.editor().rules().empty(); });
}

TEST_F(OnScreen, ThePointerLightsUpAFieldAndNotTheNameThatAClickDoesNotOpen) {
    auto& view = desk.view();
    view.setSize(500, 600);
    view.editor().add(MIDIRuleType::OutputType{OutputEntryType::PitchWheel});
    auto& card = *view.card(view.editor().rules()[0].id);
    FieldView& name = card.header();
    FieldView& type = card.output().fields()[0]->field();
    const auto nameBefore = picture(name);
    const auto typeBefore = picture(type);
    act(moveTo(type), [&] { return type.isMouseOver(); });
    EXPECT_FALSE(sameSight(picture(type), typeBefore));
    act(moveTo(name), [&] { return name.isMouseOver(); });
    EXPECT_TRUE(sameSight(picture(name), nameBefore));
}

TEST_F(OnScreen, TheRowsOfALogAreCopied) {
    auto& view = desk.view();
    view.logger().toggle();
    view.logger().advance(InOutLogger::movement);
    desk.render(512, {{0x90, 60, 100}, {0x80, 60, 0}});
    desk.drain();
    auto& log = view.logger().openedForm().inList();
    const auto row = log.localAreaToGlobal(log.rowArea(1)).getCentre();
    act("mousemove " + std::to_string(row.x) + " " + std::to_string(row.y) + " click 1",
        [&] { return log.isHeld(); });
    act("key ctrl+c key Escape", [&] { return !log.isHeld(); });
    EXPECT_EQ(juce::SystemClipboard::getTextFromClipboard(), "[0] 80 3c 00");
}

TEST_F(OnScreen, AClickOnTheHeaderTakesTheKeyboardFromItsButtons) {
    class Witness final : public juce::MouseListener {
    public:
        bool clicked = false;
        void mouseUp(const juce::MouseEvent&) override { clicked = true; }
    };
    auto& view = desk.view();
    view.grabKeyboardFocus();
    while (!view.hasKeyboardFocus(true)) {
        settle();
    }
    Witness witness;
    view.header().addMouseListener(&witness, false);
    act(moveToBareHeader() + " click 1", [&] { return witness.clicked; });
    view.header().removeMouseListener(&witness);
    EXPECT_FALSE(view.hasKeyboardFocus(true));
}

}  // namespace
}  // namespace quillo
