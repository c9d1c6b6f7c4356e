// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cstdlib>

#include "editor-main/EditorStage.hpp"
#include "editor/NewRuleSelector.hpp"

namespace quillo {
namespace {

using namespace test;
using Messages = std::vector<std::vector<std::uint8_t>>;

/// The editor in a window of a real display, used by the events of that display.
class OnScreen : public testing::Test {
protected:
    OnScreen() {
        desk.unit().MIDIOutputEventBlock = [this](AUEventSampleTime, std::uint8_t,
                                                  std::span<const std::uint8_t> bytes) {
            sent.emplace_back(bytes.begin(), bytes.end());
            return noErr;
        };
        desk.view().addToDesktop(0);
        desk.view().setTopLeftPosition(40, 40);
        desk.view().setVisible(true);
    }
    ~OnScreen() override { desk.view().removeFromDesktop(); }

    /// Lets the display act, and the editor take what comes of it until it has had its effect.
    template <class Effect>
    void act(const std::string& deed, Effect effect) {
        ASSERT_EQ(std::system(("xdotool " + deed).c_str()), 0);
        while (!effect()) {
            settle();
        }
    }

    static std::string clickOn(const juce::Component& view) {
        const auto point = view.getScreenBounds().getCentre();
        return "mousemove " + std::to_string(point.x) + " " + std::to_string(point.y) + " click 1";
    }

    Messages sent;
    Desk desk{{}};
};

TEST_F(OnScreen, ARuleIsAddedAndSentByTheEventsOfTheDisplay) {
    ASSERT_FALSE(juce::Desktop::getInstance().getDisplays().displays.isEmpty());
    auto& view = desk.view();
    while (!view.isShowing()) {
        settle();
    }
    act(clickOn(findBelow<NewRuleSelector>(view)->button()), [&] { return view.overlay() != nullptr; });
    act("type pitch", [&] {
        const auto* menu = dynamic_cast<PopupMenuOverlay*>(view.overlay());
        return menu != nullptr && menu->typed() == "pitch";
    });
    act("key Return", [&] { return !view.editor().rules().empty(); });
    EXPECT_EQ(desk.unit().processor->rules(),
              std::vector{ruleFromEntry(defaultEntry(OutputEntryType::PitchWheel, 1))});

    desk.render(512);
    sent.clear();
    act(clickOn(view.card(view.editor().rules()[0].id)->buttons().sendButton()),
        [&] { return desk.unit().processor->pendingInstantMessages() == 1; });
    desk.render(512);
    desk.drain();
    EXPECT_EQ(sent, (Messages{{0xE0, 0x00, 0x40}}));
    EXPECT_EQ(view.logger().collapsedForm().outText(), "[512] e0 00 40");
}

}  // namespace
}  // namespace quillo
