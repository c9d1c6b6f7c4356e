// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleStatus.hpp"

#include <algorithm>
#include <utility>

#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr float dotSize = 7;
constexpr int dotRoom = 14;
constexpr float dotLine = 1.2F;

int roomForDot(const RuleRemark& remark) {
    return remark.mark == RuleRemark::Mark::none ? 0 : dotRoom;
}

juce::TextLayout remarkLayout(const RuleRemark& remark, int width, juce::Colour colour = {}) {
    return inLines(remark.words, width - roomForDot(remark), style::captionText, colour);
}

void paintDot(juce::Graphics& graphics, RuleRemark::Mark mark, juce::Rectangle<float> area) {
    area = area.withSizeKeepingCentre(dotSize, dotSize);
    if (mark == RuleRemark::Mark::fired) {
        graphics.fillEllipse(area);
    } else {
        graphics.drawEllipse(area.reduced(dotLine / 2), dotLine);
    }
}

}  // namespace

RuleStatus::RuleStatus() {
    setInterceptsMouseClicks(true, false);
    setMouseClickGrabsKeyboardFocus(false);
}

void RuleStatus::show(RuleRemark remark) {
    if (remark_ == remark) {
        return;
    }
    remark_ = std::move(remark);
    setTitle(remark_.words);
    repaint();
}

int RuleStatus::widthFor(const RuleRemark& remark) {
    return textWidth(remark.words, style::captionText) + roomForDot(remark);
}

int RuleStatus::heightFor(const RuleRemark& remark, int width) {
    return lineHeight * std::max(1, remarkLayout(remark, width).getNumLines());
}

bool RuleStatus::isOneLine() const {
    return getHeight() < 2 * lineHeight;
}

juce::String RuleStatus::getTooltip() {
    return isOneLine() && widthFor(remark_) > getWidth() ? remark_.words : juce::String();
}

juce::Colour RuleStatus::colour() const {
    const auto palette = environment<PaletteKey>(*this);
    switch (remark_.mark) {
    case RuleRemark::Mark::none: break;
    case RuleRemark::Mark::fired: return displayColour(palette.delayInput);
    case RuleRemark::Mark::passedOver: return displayColour(style::passedOver);
    }
    return displayColour(palette.secondaryText);
}

void RuleStatus::paint(juce::Graphics& graphics) {
    auto area = getLocalBounds();
    graphics.setColour(colour());
    if (remark_.mark != RuleRemark::Mark::none) {
        const auto place = area.removeFromLeft(dotRoom).removeFromLeft(static_cast<int>(dotSize));
        paintDot(graphics, remark_.mark, place.withHeight(isOneLine() ? getHeight() : lineHeight).toFloat());
    }
    if (isOneLine()) {
        graphics.setFont(textFont(style::captionText));
        graphics.drawText(remark_.words, area, juce::Justification::centredLeft, true);
    } else {
        remarkLayout(remark_, getWidth(), colour()).draw(graphics, area.toFloat());
    }
}

std::unique_ptr<juce::AccessibilityHandler> RuleStatus::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::staticText);
}

}  // namespace quillo
