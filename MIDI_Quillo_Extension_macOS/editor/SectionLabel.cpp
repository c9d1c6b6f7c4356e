// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/SectionLabel.hpp"

#include <utility>

#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int labelButtonGap = 6;

}  // namespace

SectionLabel::SectionLabel(juce::String text) : text_(std::move(text)) {
    setInterceptsMouseClicks(false, true);
}

void SectionLabel::setButton(juce::Component& button, int size) {
    button_ = &button;
    button.setSize(size, size);
    addAndMakeVisible(button);
}

void SectionLabel::resized() {
    if (button_ != nullptr) {
        button_->setTopLeftPosition(textWidth(text_, style::valueText) + labelButtonGap,
                                    (getHeight() - button_->getHeight()) / 2);
    }
}

void SectionLabel::paint(juce::Graphics& graphics) {
    drawLine(graphics, text_, getLocalBounds(), style::valueText,
             displayColour(environment<PaletteKey>(*this).secondaryText));
}

}  // namespace quillo
