// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyCheckBox.hpp"

#include <algorithm>
#include <utility>

#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int box = 13;
constexpr int checkBoxPadding = 4;
constexpr float boxCorner = 3;
constexpr int labelLineHeight = 16;
constexpr int textLeft = 2 * checkBoxPadding + box + 2;

juce::TextLayout labelLayout(const juce::String& label, int width, juce::Colour colour = {}) {
    return inLines(label, width - textLeft - checkBoxPadding, style::valueText, colour);
}

void paintTick(juce::Graphics& graphics, juce::Rectangle<float> area) {
    juce::Path tick;
    tick.startNewSubPath(area.getRelativePoint(0.24F, 0.52F));
    tick.lineTo(area.getRelativePoint(0.43F, 0.72F));
    tick.lineTo(area.getRelativePoint(0.77F, 0.3F));
    graphics.strokePath(
        tick, juce::PathStrokeType(1.7F, juce::PathStrokeType::curved, juce::PathStrokeType::rounded));
}

}  // namespace

MyCheckBox::MyCheckBox(const juce::String& label, bool ticked, std::function<void(bool)> onToggle)
    : ActionButton(label,
                   [this] {
                       setToggleState(!isTicked(), juce::dontSendNotification);
                       onToggle_(isTicked());
                   }),
      onToggle_(std::move(onToggle)) {
    setButtonText(label);
    setToggleable(true);
    setToggleState(ticked, juce::dontSendNotification);
}

int MyCheckBox::preferredWidth() const {
    return textLeft + textWidth(getButtonText(), style::valueText) + checkBoxPadding;
}

int MyCheckBox::preferredHeight() const {
    return heightFor(preferredWidth());
}

int MyCheckBox::heightFor(int width) const {
    return labelLineHeight * std::max(1, labelLayout(getButtonText(), width).getNumLines()) + checkBoxPadding;
}

void MyCheckBox::paintButton(juce::Graphics& graphics, bool hover, bool down) {
    const auto palette = environment<PaletteKey>(*this);
    const auto square = juce::Rectangle<int>(checkBoxPadding, 0, box, labelLineHeight + checkBoxPadding)
                            .withSizeKeepingCentre(box, box)
                            .toFloat()
                            .reduced(0.5F);
    graphics.setColour(displayColour(hover || down ? style::litEdge(palette) : style::edge(palette)));
    if (isTicked()) {
        graphics.setColour(displayColour(palette.triggerInput));
        graphics.fillRoundedRectangle(square, boxCorner);
    }
    graphics.drawRoundedRectangle(square, boxCorner, 1);
    if (isTicked()) {
        graphics.setColour(displayColour(palette.background));
        paintTick(graphics, square);
    }
    const auto layout = labelLayout(getButtonText(), getWidth(), displayColour(palette.primaryText));
    layout.draw(graphics,
                getLocalBounds().withTrimmedLeft(textLeft).reduced(0, checkBoxPadding / 2).toFloat());
    paintFocusRing(graphics, style::fieldCorner);
}

}  // namespace quillo
