// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyWordButton.hpp"

#include <utility>

#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

/// Keeps the focus ring off the word.
constexpr int wordPadding = 4;

}  // namespace

void MyWordButton::setColour(MyRGB colour) {
    if (std::exchange(colour_, colour) != colour) {
        repaint();
    }
}

int MyWordButton::preferredWidth() const {
    return textWidth(getButtonText(), style::valueText) + 2 * wordPadding;
}

int MyWordButton::preferredHeight() const {
    return style::captionHeight + wordPadding;
}

void MyWordButton::paintButton(juce::Graphics& graphics, bool hover, bool /*down*/) {
    const auto area = getLocalBounds().reduced(wordPadding, 0);
    drawLine(graphics, getButtonText(), area, style::valueText, displayColour(colour_));
    if (hover) {
        graphics.fillRect(area.withTop(area.getCentreY() + style::captionHeight / 2).withHeight(1));
    }
    paintFocusRing(graphics, style::fieldCorner);
}

}  // namespace quillo
