// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FileDropHint.hpp"

#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/JuceText.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int hintMargin = 8;
constexpr int frame = 2;
constexpr float cover = 0.92F;
constexpr int mostLines = 6;

}  // namespace

FileDropHint::FileDropHint() {
    setInterceptsMouseClicks(false, false);
    setAlwaysOnTop(true);
    setVisible(false);
}

void FileDropHint::show(const DropEffect& drop) {
    words_ = juceText(drop.words);
    works_ = drop.works;
    setVisible(true);
    toFront(false);
    repaint();
}

void FileDropHint::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const auto area = getLocalBounds().reduced(hintMargin).toFloat();
    graphics.setColour(displayColour(palette.background).withAlpha(cover));
    graphics.fillRoundedRectangle(area, style::cardCorner);
    graphics.setColour(displayColour(works_ ? palette.delayInput : palette.secondaryText));
    graphics.drawRoundedRectangle(area.reduced(frame / 2.0F), style::cardCorner, frame);
    graphics.setColour(displayColour(palette.primaryText));
    graphics.setFont(textFont(style::titleText, works_));
    graphics.drawFittedText(words_, getLocalBounds().reduced(3 * hintMargin), juce::Justification::centred,
                            mostLines, 1);
}

}  // namespace quillo
