// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyClickOverlay.hpp"

namespace quillo {

MyClickOverlay::MyClickOverlay(juce::Component& content) : content_(content) {
    addAndMakeVisible(content_);
    content_.addMouseListener(this, true);
}

MyClickOverlay::~MyClickOverlay() {
    content_.removeMouseListener(this);
}

void MyClickOverlay::resized() {
    content_.setBounds(getLocalBounds());
}

void MyClickOverlay::mouseDown(const juce::MouseEvent& event) {
    clicks_ = event.getNumberOfClicks();
    set<MyClickOverlayClicks>(clicks_);
}

}  // namespace quillo
