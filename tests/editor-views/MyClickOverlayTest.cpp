// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyClickOverlay.hpp"

#include <gtest/gtest.h>

#include "support/JuceEvents.hpp"
#include "support/OffscreenWindow.hpp"

namespace quillo {
namespace {

using namespace test;

/// Notes which count it sees when the button is released.
struct CountReader : juce::Component {
    int seen = -1;
    void mouseUp(const juce::MouseEvent& /*event*/) override {
        seen = environment<MyClickOverlayClicks>(*this);
    }
};

TEST(MyClickOverlay, HandsTheNumberOfClicksDownToItsContent) {
    OffscreenWindow window(100, 100);
    CountReader content;
    MyClickOverlay overlay(content);
    window.show(overlay, {10, 10, 50, 50});
    EXPECT_EQ(content.getBounds(), juce::Rectangle<int>(50, 50));
    EXPECT_EQ(environment<MyClickOverlayClicks>(content), 0);
    for (const int clicks : {1, 3, 2}) {
        click(content, {20, 20}, clicks);
        EXPECT_EQ(content.seen, clicks);
        EXPECT_EQ(overlay.clicks(), clicks);
    }
    EXPECT_EQ(environment<MyClickOverlayClicks>(window), 0);
}

TEST(MyClickOverlay, CountsClicksOnWhatItsContentHolds) {
    OffscreenWindow window(100, 100);
    juce::Component content;
    CountReader inner;
    content.addAndMakeVisible(inner);
    MyClickOverlay overlay(content);
    window.show(overlay, {10, 10, 50, 50});
    inner.setBounds(0, 0, 20, 20);
    click(inner, {5, 5}, 2);
    EXPECT_EQ(inner.seen, 2);
}

}  // namespace
}  // namespace quillo
