// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/OverlayHost.hpp"

#include <gtest/gtest.h>

#include "support/JuceEvents.hpp"
#include "support/OffscreenWindow.hpp"

namespace quillo {
namespace {

using namespace test;

std::unique_ptr<juce::Component> focusableView() {
    auto view = std::make_unique<juce::Component>();
    view->setWantsKeyboardFocus(true);
    return view;
}

TEST(OverlayHost, ShowsAnOverlayOverTheWholeViewAtEverySize) {
    OffscreenWindow window(300, 200);
    window.showOverlay(focusableView());
    EXPECT_EQ(window.overlay()->getBounds(), juce::Rectangle<int>(300, 200));
    window.setSize(640, 480);
    EXPECT_EQ(window.overlay()->getBounds(), juce::Rectangle<int>(640, 480));
}

TEST(OverlayHost, ShowsOneAtATime) {
    OffscreenWindow window(300, 200);
    window.showOverlay(focusableView());
    const juce::Component::SafePointer<juce::Component> first(window.overlay());
    window.showOverlay(focusableView());
    EXPECT_EQ(first, nullptr);
    EXPECT_NE(window.overlay(), nullptr);
}

TEST(OverlayHost, TellsThatNoneIsOpenAnyMore) {
    OffscreenWindow window(300, 200);
    int times = 0;
    window.onOverlayClosed = [&] {
        EXPECT_EQ(window.overlay(), nullptr);
        ++times;
    };
    window.closeOverlay();
    window.showOverlay(focusableView());
    window.showOverlay(focusableView());
    EXPECT_EQ(times, 0);
    window.closeOverlay();
    EXPECT_EQ(times, 1);
    window.onOverlayClosed = nullptr;
}

TEST(OverlayHost, GivesTheFocusBack) {
    OffscreenWindow window(300, 200);
    const auto field = focusableView();
    window.show(*field, {10, 10, 50, 20});
    field->grabKeyboardFocus();
    window.showOverlay(focusableView());
    EXPECT_TRUE(window.overlay()->hasKeyboardFocus(false));
    window.closeOverlay();
    EXPECT_TRUE(field->hasKeyboardFocus(false));
}

TEST(OverlayHost, LeavesTheKeyboardToNobodyWhereNobodyHadIt) {
    OffscreenWindow window(300, 200);
    window.showOverlay(focusableView());
    window.closeOverlay();
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr);
}

TEST(OverlayHost, SurvivesThatTheViewWithTheFocusIsGone) {
    OffscreenWindow window(300, 200);
    auto field = focusableView();
    window.show(*field, {10, 10, 50, 20});
    field->grabKeyboardFocus();
    window.showOverlay(focusableView());
    field.reset();
    window.closeOverlay();
    EXPECT_EQ(window.overlay(), nullptr);
}

TEST(OverlayHost, IsFoundAlongTheParents) {
    OffscreenWindow window(300, 200);
    juce::Component outer;
    juce::Component inner;
    outer.addAndMakeVisible(inner);
    EXPECT_EQ(OverlayHost::find(inner), nullptr);
    window.show(outer, {0, 0, 100, 100});
    EXPECT_EQ(OverlayHost::find(inner), &window);
    EXPECT_EQ(OverlayHost::find(window), &window);
}

}  // namespace
}  // namespace quillo
