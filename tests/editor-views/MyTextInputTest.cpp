// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyTextInput.hpp"

#include <gtest/gtest.h>

#include "editor/MyClickOverlay.hpp"
#include "editor/PopupMenuOverlay.hpp"
#include "editor/ValueFormatters.hpp"
#include "support/JuceEvents.hpp"
#include "support/OffscreenWindow.hpp"
#include "support/Pictures.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

template <class Formatter>
struct InputDesk {
    using Value = Formatter::Value;

    OffscreenWindow window{300, 200};
    Value value;
    int writes = 0;
    MyTextInput<Formatter> input;
    juce::TextEditor next;

    explicit InputDesk(Value initial, Menu<Value> options = {})
        : value(std::move(initial)), input("Caption", binding(), "prompt", std::move(options)) {
        window.show(input, {20, 20, 120, input.preferredHeight()});
        window.show(next, {20, 100, 120, 20});
    }

    Binding<Value> binding() {
        return {[this] { return value; },
                [this](Value changed) {
                    value = std::move(changed);
                    ++writes;
                }};
    }

    void clickText(int times = 1) { click(input, input.textArea().getCentre(), times); }
    void press(int code) { key(window, code); }
    void retype(const juce::String& text) {
        clickText();
        type(window, text);
    }
};

struct VelocityDesk : InputDesk<VelocityFormatter> {
    explicit VelocityDesk(GenericByteV2 initial = GenericByteV2::Value{100})
        : InputDesk(initial, {{GenericByteV2::RespectiveTriggerByte{}, std::string(fromTriggerLabel)}}) {}
};

TEST(MyTextInput, ShowsTheFormattedValueAndItsChanges) {
    VelocityDesk desk;
    EXPECT_EQ(desk.input.shownText(), "100");
    const auto before = picture(desk.input);
    desk.value = GenericByteV2::RespectiveTriggerByte{};
    desk.input.refresh();
    EXPECT_EQ(desk.input.shownText(), "From Trigger");
    EXPECT_FALSE(sameSight(before, picture(desk.input)));
    EXPECT_EQ(desk.writes, 0);
}

TEST(MyTextInput, AClickOnTheTextStartsTypingOverIt) {
    VelocityDesk desk;
    desk.clickText();
    ASSERT_TRUE(desk.input.isEditable());
    EXPECT_EQ(desk.input.typist()->getHighlightedText(), "100");
    EXPECT_EQ(desk.input.typist()->getCaretPosition(), 3);
    type(desk.window, "42");
    EXPECT_EQ(desk.value, byte(100)) << "Nothing is taken before the end.";
    desk.press(juce::KeyPress::returnKey);
    EXPECT_FALSE(desk.input.isEditable());
    EXPECT_EQ(desk.value, byte(42));
    EXPECT_EQ(desk.writes, 1);
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr) << "Return lets the field go.";
}

TEST(MyTextInput, TypedTextGoesThroughTheFormatter) {
    VelocityDesk desk;
    desk.retype("200");
    desk.press(juce::KeyPress::returnKey);
    EXPECT_EQ(desk.value, byte(127));
    desk.clickText();
    desk.press(juce::KeyPress::backspaceKey);
    desk.press(juce::KeyPress::returnKey);
    EXPECT_EQ(desk.value, byte(64)) << "An emptied field that is confirmed";
}

TEST(MyTextInput, KeysThatANumberNeverNeedsLeaveItAloneAndGoOn) {
    VelocityDesk desk;
    desk.clickText();
    for (const auto code : {int{' '}, int{'x'}, int{'-'}, int{'.'}}) {
        EXPECT_FALSE(key(desk.window, code)) << code;
    }
    EXPECT_FALSE(key(desk.window, juce::KeyPress::F5Key));
    EXPECT_EQ(desk.window.unusedKeys().size(), 5U);
    EXPECT_EQ(desk.input.typist()->getHighlightedText(), "100");
    desk.next.grabKeyboardFocus();
    EXPECT_EQ(desk.value, byte(100));
    EXPECT_EQ(desk.writes, 0);
}

TEST(MyTextInput, ANumberWithoutADigitThatIsLeftIsTheOldOne) {
    VelocityDesk desk;
    desk.clickText();
    desk.press(juce::KeyPress::backspaceKey);
    desk.next.grabKeyboardFocus();
    EXPECT_EQ(desk.value, byte(100));
    EXPECT_EQ(desk.writes, 0);
    desk.clickText();
    desk.input.typist()->setText("abc");
    desk.next.grabKeyboardFocus();
    EXPECT_EQ(desk.value, byte(100)) << "Such as one that was pasted.";
}

TEST(MyTextInput, BytesAreTypedWithHexadecimalDigitsAndBlanksBetweenThem) {
    InputDesk<SystemExclusiveFormatter> desk({0x7E});
    desk.clickText();
    EXPECT_FALSE(key(desk.window, ' ')) << "It would erase what is selected.";
    EXPECT_FALSE(key(desk.window, 'g'));
    type(desk.window, "7f 0A");
    desk.press(juce::KeyPress::returnKey);
    EXPECT_EQ(desk.value, (std::vector<std::uint8_t>{0x7F, 0x0A}));
    desk.clickText();
    desk.press(juce::KeyPress::backspaceKey);
    desk.next.grabKeyboardFocus();
    EXPECT_EQ(desk.value.size(), 2U);
}

TEST(MyTextInput, ANameNeitherBeginsWithABlankNorIsLeftWithoutACharacter) {
    InputDesk<NameFormatter> desk("Intro");
    desk.clickText();
    EXPECT_FALSE(key(desk.window, ' '));
    type(desk.window, "My song");
    desk.press(juce::KeyPress::returnKey);
    EXPECT_EQ(desk.value, "My song");
    desk.clickText();
    desk.press(juce::KeyPress::backspaceKey);
    desk.next.grabKeyboardFocus();
    EXPECT_EQ(desk.value, "My song");
}

TEST(MyTextInput, EscapeLeavesTheValueAsItWas) {
    VelocityDesk desk;
    desk.retype("42");
    desk.press(juce::KeyPress::escapeKey);
    EXPECT_FALSE(desk.input.isEditable());
    EXPECT_EQ(desk.value, byte(100));
    EXPECT_EQ(desk.writes, 0);
}

TEST(MyTextInput, TextThatWasNotChangedLeavesTheValueAsItWas) {
    VelocityDesk desk(GenericByteV2::RespectiveTriggerByte{});
    desk.clickText();
    desk.press(juce::KeyPress::returnKey);
    EXPECT_EQ(desk.value, GenericByteV2(GenericByteV2::RespectiveTriggerByte{}));
    EXPECT_EQ(desk.writes, 0);
}

TEST(MyTextInput, LosingTheFocusTakesTheText) {
    VelocityDesk desk;
    desk.retype("42");
    desk.next.grabKeyboardFocus();
    EXPECT_EQ(desk.value, byte(42));
    EXPECT_FALSE(desk.input.isEditable());
    EXPECT_TRUE(desk.next.hasKeyboardFocus(false));
}

TEST(MyTextInput, TabTakesTheTextAndGoesOn) {
    VelocityDesk desk;
    desk.retype("42");
    desk.press(juce::KeyPress::tabKey);
    EXPECT_EQ(desk.value, byte(42));
    EXPECT_TRUE(desk.next.hasKeyboardFocus(false));
    key(desk.window, juce::KeyPress(juce::KeyPress::tabKey, juce::ModifierKeys::shiftModifier, 0));
    EXPECT_TRUE(desk.input.hasKeyboardFocus(false));
}

TEST(MyTextInput, TabFromAFieldThatIsTypedIntoOpensTheNextOneForTyping) {
    VelocityDesk desk;
    GenericByteV2 other = byte(7);
    MyTextInput<VelocityFormatter> second(
        "Second", {[&] { return other; }, [&](GenericByteV2 value) { other = value; }}, "prompt");
    desk.window.show(second, {20, 60, 120, second.preferredHeight()});
    desk.retype("42");
    desk.press(juce::KeyPress::tabKey);
    EXPECT_EQ(desk.value, byte(42));
    ASSERT_TRUE(second.isEditable());
    type(desk.window, "8");
    key(desk.window, juce::KeyPress(juce::KeyPress::tabKey, juce::ModifierKeys::shiftModifier, 0));
    EXPECT_EQ(other, byte(8));
    EXPECT_TRUE(desk.input.isEditable());
}

TEST(MyTextInput, TabFromAFieldThatIsNotTypedIntoGoesOn) {
    VelocityDesk desk;
    desk.input.grabKeyboardFocus();
    desk.press(juce::KeyPress::tabKey);
    EXPECT_TRUE(desk.next.hasKeyboardFocus(false));
}

TEST(MyTextInput, ADigitReturnOrF2BeginsTypingInAFocusedNumberAndNoOtherCharacterDoes) {
    VelocityDesk desk;
    desk.input.grabKeyboardFocus();
    EXPECT_FALSE(key(desk.window, juce::KeyPress::spaceKey));
    EXPECT_FALSE(key(desk.window, 'a'));
    EXPECT_FALSE(key(desk.window, {'1', juce::ModifierKeys(juce::ModifierKeys::ctrlModifier), '1'}));
    EXPECT_EQ(desk.window.unusedKeys().size(), 3U);
    EXPECT_FALSE(desk.input.isEditable());
    EXPECT_TRUE(key(desk.window, '4'));
    ASSERT_TRUE(desk.input.isEditable());
    EXPECT_TRUE(key(desk.window, '2'));
    EXPECT_EQ(desk.input.typist()->getText(), "42");
    desk.press(juce::KeyPress::escapeKey);
    EXPECT_EQ(desk.value, byte(100));
    for (const auto code : {juce::KeyPress::returnKey, juce::KeyPress::F2Key}) {
        desk.press(code);
        EXPECT_EQ(desk.input.typist()->getHighlightedText(), "100");
        desk.press(juce::KeyPress::escapeKey);
    }
}

TEST(MyTextInput, NoCharacterBeginsTypingInAFocusedName) {
    InputDesk<NameFormatter> desk("Intro");
    desk.input.grabKeyboardFocus();
    EXPECT_FALSE(key(desk.window, '1'));
    EXPECT_FALSE(desk.input.isEditable());
}

TEST(MyTextInput, AClickOnTheChevronOpensTheOptions) {
    VelocityDesk desk;
    click(desk.input, desk.input.chevronArea().getCentre());
    EXPECT_FALSE(desk.input.isEditable());
    auto* menu = dynamic_cast<PopupMenuOverlay*>(desk.window.overlay());
    ASSERT_NE(menu, nullptr);
    click(*menu, menu->rowArea(0).getCentre());
    EXPECT_EQ(desk.value, GenericByteV2(GenericByteV2::RespectiveTriggerByte{}));
    EXPECT_EQ(desk.writes, 1);
}

TEST(MyTextInput, AltAndDownOpenTheOptions) {
    VelocityDesk desk;
    desk.input.grabKeyboardFocus();
    key(desk.window, juce::KeyPress(juce::KeyPress::downKey, juce::ModifierKeys::altModifier, 0));
    ASSERT_NE(desk.window.overlay(), nullptr);
    desk.press(juce::KeyPress::returnKey);
    EXPECT_EQ(desk.value, GenericByteV2(GenericByteV2::RespectiveTriggerByte{}));
    EXPECT_TRUE(desk.input.hasKeyboardFocus(false));
}

TEST(MyTextInput, AfterAPickByKeysTheFieldThatWasTypedIntoHasTheKeyboard) {
    VelocityDesk desk;
    desk.retype("42");
    key(desk.window, juce::KeyPress(juce::KeyPress::downKey, juce::ModifierKeys::altModifier, 0));
    EXPECT_EQ(desk.value, byte(42));
    ASSERT_NE(desk.window.overlay(), nullptr);
    desk.press(juce::KeyPress::returnKey);
    EXPECT_EQ(desk.value, GenericByteV2(GenericByteV2::RespectiveTriggerByte{}));
    EXPECT_TRUE(desk.input.hasKeyboardFocus(false));
}

TEST(MyTextInput, OpeningTheOptionsTakesWhatWasTyped) {
    VelocityDesk desk;
    desk.retype("42");
    click(desk.input, desk.input.chevronArea().getCentre());
    EXPECT_EQ(desk.value, byte(42));
    EXPECT_NE(desk.window.overlay(), nullptr);
}

TEST(MyTextInput, StepsANumberByKeys) {
    VelocityDesk desk;
    desk.input.grabKeyboardFocus();
    desk.press(juce::KeyPress::upKey);
    EXPECT_EQ(desk.value, byte(101));
    desk.press(juce::KeyPress::downKey);
    desk.press(juce::KeyPress::downKey);
    EXPECT_EQ(desk.value, byte(99));
    for (int press = 0; press < 4; ++press) {
        desk.press(juce::KeyPress::pageUpKey);
    }
    EXPECT_EQ(desk.value, byte(127));
    desk.press(juce::KeyPress::pageDownKey);
    EXPECT_EQ(desk.value, byte(117));
}

TEST(MyTextInput, StepsFromTheGreatestValueWhenAGreaterOneIsTyped) {
    VelocityDesk desk;
    desk.retype("127");
    desk.press(juce::KeyPress::returnKey);
    desk.retype("200");
    desk.press(juce::KeyPress::downKey);
    EXPECT_EQ(desk.value, byte(126));
}

TEST(MyTextInput, StepsWhatIsBeingTyped) {
    VelocityDesk desk;
    desk.retype("42");
    desk.press(juce::KeyPress::upKey);
    EXPECT_EQ(desk.value, byte(43));
    EXPECT_TRUE(desk.input.isEditable());
    EXPECT_EQ(desk.input.typist()->getText(), "43");
    desk.press(juce::KeyPress::escapeKey);
    EXPECT_EQ(desk.value, byte(43));
}

TEST(MyTextInput, TheWheelStepsOnlyWhatIsTypedInto) {
    VelocityDesk desk;
    wheel(desk.input, 0.4F);
    desk.input.grabKeyboardFocus();
    wheel(desk.input, 0.4F);
    EXPECT_EQ(desk.value, byte(100)) << "The focus alone is not enough.";
    desk.clickText();
    wheel(desk.input, 0.4F);
    EXPECT_EQ(desk.value, byte(101));
    wheel(desk.input, -0.4F);
    wheel(desk.input, -0.4F);
    EXPECT_EQ(desk.value, byte(99));
    desk.press(juce::KeyPress::returnKey);
    wheel(desk.input, 0.4F);
    EXPECT_EQ(desk.value, byte(99));
}

TEST(MyTextInput, TheWheelStepsAnyNumberWhileCtrlIsHeld) {
    VelocityDesk desk;
    juce::ModifierKeys::currentModifiers = juce::ModifierKeys(juce::ModifierKeys::ctrlModifier);
    wheel(desk.input, 0.4F);
    EXPECT_EQ(desk.value, byte(101));
    desk.input.setEnabled(false);
    wheel(desk.input, 0.4F);
    juce::ModifierKeys::currentModifiers = {};
    EXPECT_EQ(desk.value, byte(101));
}

TEST(MyTextInput, StepsAndConfirmationsReachTheBindingAsSuch) {
    OffscreenWindow window(300, 200);
    std::vector<std::string> changes;
    std::int64_t delay = 5;
    MyTextInput<DelayValueFormatter> input("Delay",
                                           {[&] { return delay; },
                                            [&](std::int64_t value) {
                                                delay = value;
                                                changes.push_back("set " + std::to_string(value));
                                            },
                                            [&](std::int64_t value, FieldPlace) {
                                                delay = value;
                                                changes.push_back("step " + std::to_string(value));
                                            }},
                                           "prompt");
    window.show(input, {20, 20, 120, input.preferredHeight()});
    click(input, input.textArea().getCentre());
    type(window, "40");
    key(window, juce::KeyPress::upKey);
    type(window, "7");
    key(window, juce::KeyPress::returnKey);
    EXPECT_EQ(changes, (std::vector<std::string>{"set 40", "step 41", "set 7"}));
}

TEST(MyTextInput, WhatIsNoNumberIsNotStepped) {
    InputDesk<NameFormatter> desk("5");
    desk.input.grabKeyboardFocus();
    EXPECT_FALSE(key(desk.window, juce::KeyPress::upKey));
    EXPECT_EQ(desk.value, "5");
}

TEST(MyTextInput, TheKeysThatStepNumbersLeaveANameThatIsBeingTypedToEscape) {
    InputDesk<NameFormatter> desk("Intro");
    desk.retype("Other");
    for (const auto code : {juce::KeyPress::upKey, juce::KeyPress::downKey, juce::KeyPress::pageUpKey,
                            juce::KeyPress::pageDownKey}) {
        desk.press(code);
    }
    wheel(desk.input, 0.4F);
    EXPECT_EQ(desk.value, "Intro");
    desk.press(juce::KeyPress::escapeKey);
    EXPECT_EQ(desk.value, "Intro");
    EXPECT_EQ(desk.writes, 0);
}

TEST(MyTextInput, AWheelThatTurnsSidewaysStepsNothing) {
    VelocityDesk desk;
    desk.clickText();
    wheel(desk.input, 0);
    EXPECT_EQ(desk.value, byte(100));
}

TEST(MyTextInput, OffersOtherOptionsOnceTheyAreSet) {
    VelocityDesk desk;
    desk.input.setOptions({});
    EXPECT_FALSE(desk.input.hasChevron());
}

TEST(MyTextInput, DigitsAndSignsWithCtrlAreNotTyped) {
    const juce::ModifierKeys ctrl(juce::ModifierKeys::ctrlModifier);
    InputDesk<NameFormatter> desk("Intro");
    desk.retype("Other");
    for (const auto code : {'1', '-', '+', '\x7F'}) {
        EXPECT_FALSE(key(desk.window, {code, ctrl, static_cast<juce::juce_wchar>(code)}));
    }
    EXPECT_EQ(desk.input.typist()->getText(), "Other");
    EXPECT_TRUE(key(desk.window, juce::KeyPress(juce::KeyPress::deleteKey, ctrl, 0x7F)));
    EXPECT_TRUE(key(desk.window, juce::KeyPress('a', ctrl, 0)));
    EXPECT_EQ(desk.input.typist()->getHighlightedText(), "Other");
}

TEST(MyTextInput, ShowsThePromptInPlaceOfNothing) {
    InputDesk<NameFormatter> desk("");
    const Palette palette;
    desk.window.set<MyPrimaryColor>(palette.delayInput);
    desk.window.set<MySecondaryColor>(palette.delayInputSecondaryColor);
    EXPECT_GT(pixelsLike(picture(desk.input, 3), palette.secondaryText), 20);
    const auto name = juce::String::fromUTF8("\u00DCberlauf \u266F");
    desk.retype(name);
    desk.press(juce::KeyPress::returnKey);
    EXPECT_EQ(desk.value, name.toStdString());
    EXPECT_EQ(pixelsLike(picture(desk.input, 3), palette.secondaryText), 0);
}

TEST(MyTextInput, ShowsThePromptWholeInAFieldThatWasEmptied) {
    VelocityDesk desk;
    const Palette palette;
    desk.window.set<MyPrimaryColor>(palette.delayInput);
    desk.window.set<MySecondaryColor>(palette.delayInputSecondaryColor);
    const auto promptPixels = [&] {
        return pixelsLike(picture(desk.input, 3), palette.secondaryText, desk.input.textArea() * 3);
    };
    desk.clickText();
    EXPECT_EQ(promptPixels(), 0);
    desk.press(juce::KeyPress::deleteKey);
    EXPECT_GT(promptPixels(), 20);
    type(desk.window, "7");
    EXPECT_EQ(promptPixels(), 0);
    EXPECT_GE(desk.input.preferredWidth(), FieldView::preferredWidth({}, "prompt", true));
}

TEST(MyTextInput, ADifferentNumberOfClicksMayStartTyping) {
    VelocityDesk desk;
    desk.input.setClicks(2);
    desk.clickText();
    EXPECT_FALSE(desk.input.isEditable());
    desk.clickText(2);
    EXPECT_TRUE(desk.input.isEditable());
}

TEST(MyTextInput, ADisabledFieldIsNotChanged) {
    VelocityDesk desk;
    desk.input.setEnabled(false);
    desk.clickText();
    EXPECT_FALSE(desk.input.isEditable());
    EXPECT_FALSE(desk.input.keyPressed(juce::KeyPress(juce::KeyPress::upKey)));
    EXPECT_EQ(desk.writes, 0);
}

TEST(MyTextInput, MayBeDeletedByWhatItsValueChanges) {
    OffscreenWindow window(300, 200);
    std::unique_ptr<MyTextInput<NameFormatter>> input;
    std::string name = "a";
    input = std::make_unique<MyTextInput<NameFormatter>>("Name",
                                                         Binding<std::string>{[&] { return name; },
                                                                              [&](const std::string& typed) {
                                                                                  name = typed;
                                                                                  input.reset();
                                                                              }},
                                                         "prompt");
    window.show(*input, {20, 20, 120, 38});
    click(*input, input->textArea().getCentre());
    type(window, "b");
    key(window, juce::KeyPress::returnKey);
    EXPECT_EQ(name, "b");
    EXPECT_EQ(input, nullptr);
}

TEST(MyTextInput, CutsALongTextAndShowsItWholeAsATooltip) {
    InputDesk<NameFormatter> desk("A name that is much too long for its field");
    EXPECT_EQ(desk.input.getTooltip(), juce::String(desk.value));
    desk.input.setSize(desk.input.preferredWidth(), desk.input.preferredHeight());
    EXPECT_EQ(desk.input.getTooltip(), "");
}

TEST(MyTextInput, IsATextFieldToThoseWhoDoNotSeeIt) {
    VelocityDesk desk;
    auto* handler = desk.input.getAccessibilityHandler();
    ASSERT_NE(handler, nullptr);
    EXPECT_EQ(handler->getRole(), juce::AccessibilityRole::editableText);
    EXPECT_EQ(handler->getTitle(), "Caption");
    EXPECT_EQ(handler->getValueInterface()->getCurrentValueAsString(), "100");
    handler->getValueInterface()->setValueAsString("300");
    EXPECT_EQ(desk.value, byte(64));
}

}  // namespace
}  // namespace quillo
