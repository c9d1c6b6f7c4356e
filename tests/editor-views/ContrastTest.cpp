// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "editor/EditorLookAndFeel.hpp"
#include "editor/MyCheckBox.hpp"
#include "editor/MyDragAndDropForEachDragHandle.hpp"
#include "editor/MyPicker.hpp"
#include "editor/MyTextButton.hpp"
#include "editor/MyWordButton.hpp"
#include "editor/PresetBrowserView.hpp"
#include "editor/Style.hpp"
#include "support/OffscreenWindow.hpp"
#include "support/Pictures.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillo {
namespace {

using namespace test;

constexpr double readable = 4.5;
constexpr double visible = 3;

MyRGB rgb(juce::Colour colour) {
    return {colour.getRed(), colour.getGreen(), colour.getBlue()};
}

TEST(Contrast, OfKnownPairs) {
    EXPECT_NEAR(contrast({0, 0, 0}, {255, 255, 255}), 21, 0.01);
    EXPECT_NEAR(contrast({10, 20, 30}, {10, 20, 30}), 1, 0.01);
    EXPECT_NEAR(contrast({119, 119, 119}, {255, 255, 255}), 4.48, 0.01);
}

TEST(Contrast, EveryValueCanBeReadOnEveryGround) {
    const Palette palette;
    const auto card = style::lifted(palette.background, style::cardLift);
    const MyRGB grounds[] = {palette.background, card, style::lifted(card, style::boxLift),
                             style::lifted(card, style::buttonHoverLift),
                             style::lifted(palette.background, style::menuLift)};
    const MyRGB texts[] = {palette.primaryText,     palette.typeInput,       palette.channelInput,
                           palette.midi2dByteInput, palette.midi3dByteInput, palette.triggerInput,
                           palette.delayInput};
    for (const auto ground : grounds) {
        for (const auto text : texts) {
            EXPECT_GE(contrast(text, ground), readable)
                << int{text.r} << ' ' << int{text.g} << ' ' << int{text.b} << " on " << int{ground.r};
        }
    }
}

TEST(Contrast, SecondaryTextCanBeReadOnEverySurface) {
    const Palette palette;
    for (const auto lift : {0, style::cardLift, style::cardLift + style::boxLift, style::menuLift}) {
        EXPECT_GE(contrast(palette.secondaryText, style::lifted(palette.background, lift)), readable) << lift;
    }
}

TEST(Contrast, EveryCaptionCanBeReadOnItsCard) {
    const Palette palette;
    const auto card = style::lifted(palette.background, style::cardLift);
    const std::pair<MyRGB, MyRGB> colours[] = {
        {palette.typeInput, palette.typeInputSecondaryColor},
        {palette.channelInput, palette.channelInputSecondaryColor},
        {palette.midi2dByteInput, palette.midi2dByteInputSecondaryColor},
        {palette.midi3dByteInput, palette.midi3dByteInputSecondaryColor},
        {palette.triggerInput, palette.triggerInputSecondaryColor},
        {palette.delayInput, palette.delayInputSecondaryColor}};
    for (const auto& [primary, secondary] : colours) {
        EXPECT_GE(contrast(style::caption(primary, secondary), card), readable) << int{primary.r};
        EXPECT_GE(contrast(secondary, card), visible) << "the line under the box, " << int{secondary.r};
    }
}

TEST(Contrast, EdgesAndThumbsAreSeenOnWhatTheyLieOn) {
    const Palette palette;
    for (const auto lift : {-5, 0, style::cardLift}) {
        const auto ground = style::lifted(palette.background, lift);
        EXPECT_GE(contrast(style::edge(palette), ground), visible) << lift;
        EXPECT_GE(contrast(style::litEdge(palette), ground), visible) << lift;
    }
    EXPECT_GE(contrast(style::litEdge(palette), style::edge(palette)), 1.5);
    const EditorLookAndFeel look;
    EXPECT_EQ(look.findColour(juce::ScrollBar::thumbColourId), displayColour(style::edge(palette)));
}

TEST(Contrast, WhatACardSaysOfItsRuleAndWhatWaitsCanBeRead) {
    const Palette palette;
    const auto card = style::lifted(palette.background, style::cardLift);
    const auto list = style::lifted(palette.background, -5);
    EXPECT_GE(contrast(style::passedOver, card), readable);
    EXPECT_GE(contrast(palette.delayInput, card), readable);
    EXPECT_GE(contrast(palette.delayInput, list), readable);
    EXPECT_GE(contrast(palette.secondaryText, list), readable);
    EXPECT_GE(contrast(palette.background, palette.primaryText), readable) << "a row that is chosen";
}

TEST(Contrast, WhatStopsThingsCanBeReadAndItsEdgeIsSeen) {
    const Palette palette;
    for (const auto lift : {-5, 0, style::buttonHoverLift, style::menuLift}) {
        const auto ground = style::lifted(palette.background, lift);
        EXPECT_GE(contrast(style::alarmText, ground), readable) << lift;
        EXPECT_GE(contrast(style::alarmEdge, ground), visible) << lift;
    }
}

TEST(Contrast, ALightStandsOutFromTheCardAndTheGripFromTheLight) {
    const Palette palette;
    EXPECT_GE(contrast(palette.triggerInput, style::lifted(palette.background, style::cardLift)), visible);
    EXPECT_GE(contrast(palette.triggerInput, style::edge(palette)), 1.5);
    EXPECT_GE(contrast(palette.background, palette.triggerInput), visible)
        << "its dots, and a tick in its box";
}

/// How many pixels change by a contrast that is seen when a view gets the keyboard focus.
int pixelsOfTheFocus(juce::Component& view) {
    const auto before = picture(view);
    view.grabKeyboardFocus();
    const auto after = picture(view);
    int count = 0;
    for (int i = 0; i < after.getWidth() * after.getHeight(); ++i) {
        const auto x = i % after.getWidth();
        const auto y = i / after.getWidth();
        count += contrast(rgb(before.getPixelAt(x, y)), rgb(after.getPixelAt(x, y))) >= visible;
    }
    return count;
}

int aLineAround(const juce::Component& view) {
    return 2 * (view.getWidth() + view.getHeight() - 16);
}

TEST(Contrast, TheFocusIsSeenAroundAButtonAGripAndAField) {
    OffscreenWindow window(300, 200);
    const Palette palette;
    MyTextButton plain("Duplicate", {});
    MyTextButton send("Send", {});
    MyPicker<int> picker("Type", {{1, "CC"}}, {[] { return 1; }, [](int) {}});
    MyDragAndDropForEachDragHandle grip;
    MyWordButton word("Cancel all", {});
    MyCheckBox box("Let notes end", false, {});
    send.setAccented(true);
    window.set<MyPrimaryColor>(palette.delayInput);
    window.set<MySecondaryColor>(palette.delayInputSecondaryColor);
    window.show(plain, {10, 10, 80, 21});
    window.show(send, {100, 10, 80, 21});
    window.show(picker, {10, 50, 80, 38});
    window.show(grip, {200, 10, 22, 120});
    window.show(word, {10, 100, 70, 18});
    window.show(box, {10, 130, 150, 20});
    for (auto* view : std::initializer_list<juce::Component*>{&plain, &send, &grip, &word, &box}) {
        EXPECT_GE(pixelsOfTheFocus(*view), aLineAround(*view)) << view->getTitle();
    }
    EXPECT_GE(pixelsOfTheFocus(picker), 2 * (80 + 24 - 16));
}

/// The strongest contrast of what is drawn in this part of a view, with what lies under most of it.
double contrastDrawn(juce::Component& view, juce::Rectangle<int> area) {
    constexpr int scale = 3;
    const auto image = picture(view, scale);
    const auto ground = rgb(image.getPixelAt(area.getRight() * scale - 2, area.getY() * scale + 2));
    double strongest = 1;
    for (int y = area.getY() * scale; y < area.getBottom() * scale; ++y) {
        for (int x = area.getX() * scale; x < area.getRight() * scale; ++x) {
            strongest = std::max(strongest, contrast(rgb(image.getPixelAt(x, y)), ground));
        }
    }
    return strongest;
}

TEST(Contrast, NamesDatesFolderAndPromptOfTheBrowserCanBeRead) {
    const TemporaryFolder folder;
    for (const auto* name : {"one.json", "two.json"}) {
        writeWholeFile(folder / name, std::vector<std::uint8_t>{'{', '}'}, Existing::keep);
    }
    OffscreenWindow window(500, 250);
    PresetBrowserView view(PresetBrowser(PresetBrowser::Mode::open, {.home = folder.path()}), {}, {});
    window.show(view, {0, 0, 500, 250});
    view.list().selectRow(0);
    const auto list = view.list().getBounds();
    const auto row = [&](int number) {
        return list.withHeight(style::menuRowHeight)
            .translated(0, number * style::menuRowHeight)
            .reduced(4, 2);
    };
    for (const auto number : {0, 1}) {
        EXPECT_GE(contrastDrawn(view, row(number).removeFromLeft(120).withTrimmedLeft(30)), readable)
            << number;
        EXPECT_GE(contrastDrawn(view, row(number).removeFromRight(110)), readable) << number;
    }
    const auto above = view.leaveButton().getBounds();
    EXPECT_GE(contrastDrawn(view, above.withX(above.getRight() + 4).withWidth(120)), readable) << "folder";
    EXPECT_GE(contrastDrawn(view, view.nameField().getBounds().reduced(40, 3)), readable) << "prompt";
}

}  // namespace
}  // namespace quillo
