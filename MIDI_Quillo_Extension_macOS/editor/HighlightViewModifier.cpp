// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/HighlightViewModifier.hpp"

namespace quillo {

HoverView::HoverView(juce::Component& content, HighlightStyle style) : content_(content), style_(style) {
    addAndMakeVisible(content_);
    content_.addMouseListener(this, true);
}

HoverView::~HoverView() {
    content_.removeMouseListener(this);
}

void HoverView::resized() {
    content_.setBounds(getLocalBounds());
}

void HoverView::mouseEnter(const juce::MouseEvent& /*event*/) {
    setHover(true);
}

void HoverView::mouseExit(const juce::MouseEvent& event) {
    setHover(getLocalBounds().toFloat().contains(event.getEventRelativeTo(this).position));
}

void HoverView::setHover(bool hover) {
    if (hover_ != hover) {
        hover_ = hover;
        publish();
        repaint();
    }
}

HighlightViewModifier::HighlightViewModifier(juce::Component& content, HighlightStyle style)
    : HoverView(content, style) {
    HighlightViewModifier::publish();
}

void HighlightViewModifier::publish() {
    set<MyPrimaryColor>(colour());
}

HighlightBackgroundViewModifier::HighlightBackgroundViewModifier(juce::Component& content,
                                                                 HighlightStyle style, float corner)
    : HoverView(content, style), corner_(corner) {
    HighlightBackgroundViewModifier::publish();
}

void HighlightBackgroundViewModifier::publish() {
    set<MyBackground>(colour());
}

void HighlightBackgroundViewModifier::paint(juce::Graphics& graphics) {
    graphics.setColour(displayColour(colour()));
    graphics.fillRoundedRectangle(getLocalBounds().toFloat(), corner_);
}

}  // namespace quillo
