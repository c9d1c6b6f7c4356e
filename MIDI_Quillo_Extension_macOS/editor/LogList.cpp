// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/LogList.hpp"

#include "editor/Environment.hpp"
#include "editor/FocusRing.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int logListMargin = 3;
constexpr int groundLift = -5;

}  // namespace

LogList::LogList(const juce::String& title) {
    list_.setTitle(title);
    list_.setRowHeight(style::logRowHeight);
    list_.getViewport()->setScrollBarThickness(style::scrollBarWidth);
    list_.setColour(juce::ListBox::backgroundColourId, juce::Colours::transparentBlack);
    list_.addKeyListener(this);
    addAndMakeVisible(list_);
}

LogList::~LogList() {
    list_.removeKeyListener(this);
    list_.setModel(nullptr);
}

juce::Rectangle<int> LogList::rowArea(int row) const {
    return list_.getRowPosition(row, true) + list_.getPosition();
}

juce::Rectangle<int> LogList::rowsArea() const {
    return getLocalBounds().reduced(logListMargin);
}

void LogList::resized() {
    list_.setBounds(rowsArea());
}

void LogList::focusOfChildComponentChanged(FocusChangeType /*cause*/) {
    repaint();
}

void LogList::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const auto area = getLocalBounds().toFloat().reduced(0.5F);
    graphics.setColour(displayColour(style::lifted(palette.background, groundLift)));
    graphics.fillRoundedRectangle(area, style::fieldCorner);
    graphics.setColour(displayColour(style::edge(palette)));
    graphics.drawRoundedRectangle(area, style::fieldCorner, 1);
}

void LogList::paintOverChildren(juce::Graphics& graphics) {
    if (hasKeyboardFocus(true)) {
        drawFocusRing(graphics, getLocalBounds(), style::fieldCorner,
                      displayColour(environment<PaletteKey>(*this).primaryText));
    }
}

}  // namespace quillo
