// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyPicker.hpp"

#include <gtest/gtest.h>

#include "editor/PopupMenuOverlay.hpp"
#include "support/JuceEvents.hpp"
#include "support/OffscreenWindow.hpp"
#include "support/Pictures.hpp"

namespace quillo {
namespace {

using namespace test;

struct PickerDesk {
    OffscreenWindow window{300, 300};
    std::uint8_t controller = 7;
    int writes = 0;
    MyPicker<std::uint8_t> picker{"Controller", controllerMenu(), binding(),
                                  [](const std::uint8_t& other) { return "Other " + juce::String(other); }};

    PickerDesk() { window.show(picker, {20, 20, picker.preferredWidth(), picker.preferredHeight()}); }

    Binding<std::uint8_t> binding() {
        return {[this] { return controller; },
                [this](std::uint8_t value) {
                    controller = value;
                    ++writes;
                }};
    }

    [[nodiscard]] PopupMenuOverlay* menu() const { return dynamic_cast<PopupMenuOverlay*>(window.overlay()); }
    void open() { click(picker, picker.boxArea().getCentre()); }
};

TEST(MyPicker, ShowsTheLabelOfItsValue) {
    PickerDesk desk;
    EXPECT_EQ(desk.picker.shownText(), "7 : Volume");
    EXPECT_TRUE(desk.picker.hasChevron());
    EXPECT_EQ(desk.picker.caption(), "Controller");
}

TEST(MyPicker, ShowsAValueThatChangedElsewhere) {
    PickerDesk desk;
    const auto before = picture(desk.picker);
    desk.controller = 64;
    desk.picker.refresh();
    EXPECT_EQ(desk.picker.shownText(), "64 : Sustain");
    EXPECT_FALSE(sameSight(before, picture(desk.picker)));
    EXPECT_EQ(desk.writes, 0);
}

TEST(MyPicker, DescribesAValueThatIsNotOffered) {
    PickerDesk desk;
    desk.controller = 200;
    EXPECT_EQ(desk.picker.shownText(), "Other 200");
    desk.open();
    ASSERT_NE(desk.menu(), nullptr);
    key(desk.window, juce::KeyPress::escapeKey);
    EXPECT_EQ(desk.controller, 200);
}

TEST(MyPicker, OpensAtItsValueOnAClickAndTakesTheRowThatIsClicked) {
    PickerDesk desk;
    desk.open();
    ASSERT_NE(desk.menu(), nullptr);
    EXPECT_EQ(desk.menu()->highlightedRow(), 7U);
    click(*desk.menu(), desk.menu()->rowArea(8).getCentre());
    EXPECT_EQ(desk.menu(), nullptr);
    EXPECT_EQ(desk.controller, 8);
    EXPECT_EQ(desk.writes, 1);
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr)
        << "The keyboard goes back to the host.";
}

TEST(MyPicker, IsOperatedByKeys) {
    for (const auto opens : {juce::KeyPress::spaceKey, juce::KeyPress::returnKey, juce::KeyPress::downKey}) {
        PickerDesk desk;
        desk.picker.grabKeyboardFocus();
        EXPECT_TRUE(key(desk.window, opens));
        ASSERT_NE(desk.menu(), nullptr);
        key(desk.window, juce::KeyPress::upKey);
        key(desk.window, juce::KeyPress::returnKey);
        EXPECT_EQ(desk.menu(), nullptr);
        EXPECT_EQ(desk.controller, 6);
        EXPECT_TRUE(desk.picker.hasKeyboardFocus(false));
    }
}

TEST(MyPicker, LeavesCharactersToItsParentsWhileItIsClosed) {
    PickerDesk desk;
    desk.picker.grabKeyboardFocus();
    EXPECT_FALSE(key(desk.window, 'x'));
    EXPECT_EQ(desk.window.unusedKeys().size(), 1U);
}

TEST(MyPicker, WritesNothingWhenTheSameValueIsPicked) {
    PickerDesk desk;
    desk.open();
    key(desk.window, juce::KeyPress::returnKey);
    EXPECT_EQ(desk.menu(), nullptr);
    EXPECT_EQ(desk.writes, 0);
}

TEST(MyPicker, StaysClosedWhileItIsDisabled) {
    PickerDesk desk;
    desk.picker.setEnabled(false);
    desk.open();
    EXPECT_EQ(desk.menu(), nullptr);
}

TEST(MyPicker, MayBeDeletedByWhatItsValueChanges) {
    OffscreenWindow window(300, 300);
    std::unique_ptr<MyPicker<std::uint8_t>> picker;
    int picked = -1;
    picker = std::make_unique<MyPicker<std::uint8_t>>("Controller", controllerMenu(),
                                                      Binding<std::uint8_t>{[] { return std::uint8_t{0}; },
                                                                            [&](std::uint8_t value) {
                                                                                picked = value;
                                                                                picker.reset();
                                                                            }});
    window.show(*picker, {20, 20, 120, 38});
    picker->openMenu();
    key(window, juce::KeyPress::endKey);
    key(window, juce::KeyPress::returnKey);
    EXPECT_EQ(picked, 127);
    EXPECT_EQ(picker, nullptr);
}

TEST(MyPicker, OffersOtherValuesOnceTheyAreSet) {
    PickerDesk desk;
    desk.picker.setDescription({{7, "seven"}});
    EXPECT_EQ(desk.picker.shownText(), "seven");
}

TEST(MyPicker, CutsALongLabelAndShowsItWholeAsATooltip) {
    PickerDesk desk;
    EXPECT_EQ(desk.picker.getTooltip(), "");
    desk.picker.setSize(60, desk.picker.preferredHeight());
    EXPECT_EQ(desk.picker.getTooltip(), "7 : Volume");
    EXPECT_EQ(MyPickerImpl::preferredWidth("Controller", "7 : Volume", true), desk.picker.preferredWidth());
}

TEST(MyPicker, IsDrawnInTheColoursAroundIt) {
    PickerDesk desk;
    const Palette palette;
    desk.window.set<MyPrimaryColor>(palette.midi2dByteInput);
    desk.window.set<MySecondaryColor>(palette.midi2dByteInputSecondaryColor);
    for (const auto scale : {1.0F, 1.25F, 1.5F, 2.0F, 3.0F}) {
        const auto image = picture(desk.picker, scale);
        const auto underline = image.getBounds().removeFromBottom(static_cast<int>(2 * scale));
        EXPECT_GT(pixelsLike(image, palette.midi2dByteInputSecondaryColor, underline),
                  underline.getWidth() / 2)
            << scale;
    }
    EXPECT_GT(pixelsLike(picture(desk.picker, 3), palette.midi2dByteInput), 50);
}

TEST(MyPicker, IsAComboBoxWithItsValueToThoseWhoDoNotSeeIt) {
    PickerDesk desk;
    auto* handler = desk.picker.getAccessibilityHandler();
    ASSERT_NE(handler, nullptr);
    EXPECT_EQ(handler->getRole(), juce::AccessibilityRole::comboBox);
    EXPECT_EQ(handler->getTitle(), "Controller");
    EXPECT_EQ(handler->getValueInterface()->getCurrentValueAsString(), "7 : Volume");
    EXPECT_TRUE(handler->getValueInterface()->isReadOnly());
    EXPECT_TRUE(handler->getActions().invoke(juce::AccessibilityActionType::press));
    EXPECT_NE(desk.menu(), nullptr);
}

}  // namespace
}  // namespace quillo
