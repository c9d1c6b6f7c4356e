// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/PanicAnswer.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int answerMargin = 12;
constexpr int answerPadding = 8;
constexpr int answerGap = 2;

/// What of its width the words have.
int wordsWidth(int width) {
    return width - 2 * answerPadding - style::iconButtonSize;
}

int wordsHeight(const juce::String& words, int width) {
    const auto height =
        static_cast<int>(std::ceil(inLines(words, wordsWidth(width), style::valueText).getHeight()));
    return std::max(style::iconButtonSize - answerPadding, height);
}

}  // namespace

PanicAnswer::PanicAnswer(bool notesEnd, Actions actions)
    : actions_(std::move(actions)),
      notesEnd_("Let notes end when rules change", notesEnd, [this](bool end) { actions_.onNotesEnd(end); }),
      close_("Dismiss", IconName::clear, [this] { actions_.onClose(); }) {
    addAndMakeVisible(notesEnd_);
    addAndMakeVisible(close_);
    setVisible(false);
}

void PanicAnswer::show(const juce::String& words) {
    words_ = words;
    left_ = time;
    setTitle(words);
    setVisible(true);
    juce::AccessibilityHandler::postAnnouncement(words,
                                                 juce::AccessibilityHandler::AnnouncementPriority::high);
    repaint();
}

void PanicAnswer::advance(double seconds) {
    if (!isVisible() || isMouseOverOrDragging(true) || hasKeyboardFocus(true)) {
        return;
    }
    left_ -= seconds;
    if (left_ <= 0) {
        actions_.onClose();
    }
}

void PanicAnswer::placeIn(juce::Rectangle<int> area) {
    area = area.reduced(answerMargin, answerMargin / 2);
    const auto text = textWidth(words_, style::valueText) + 1 + 2 * answerPadding + style::iconButtonSize;
    const auto width =
        std::min(area.getWidth(), std::max(text, notesEnd_.preferredWidth() + 2 * answerPadding));
    const auto height = 2 * answerPadding + wordsHeight(words_, width) + answerGap +
                        notesEnd_.heightFor(width - 2 * answerPadding);
    setBounds(area.removeFromRight(width).withHeight(height));
}

void PanicAnswer::resized() {
    auto area = getLocalBounds();
    close_.setBounds(area.withTrimmedTop(answerPadding / 2 - 1)
                         .withTrimmedRight(answerPadding / 2 - 1)
                         .removeFromRight(style::iconButtonSize)
                         .removeFromTop(style::iconButtonSize));
    area.reduce(answerPadding, answerPadding);
    area.removeFromTop(wordsHeight(words_, getWidth()) + answerGap);
    notesEnd_.setBounds(area.removeFromLeft(std::min(area.getWidth(), notesEnd_.preferredWidth())));
}

void PanicAnswer::parentHierarchyChanged() {
    set<MyBackground>(style::lifted(environment<PaletteKey>(*this).background, style::menuLift));
}

void PanicAnswer::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const auto panel = getLocalBounds().toFloat();
    graphics.setColour(displayColour(environment<MyBackground>(*this)));
    graphics.fillRoundedRectangle(panel, style::buttonCorner);
    graphics.setColour(displayColour(style::alarmEdge));
    graphics.drawRoundedRectangle(panel.reduced(0.5F), style::buttonCorner, 1);
    const auto layout =
        inLines(words_, wordsWidth(getWidth()), style::valueText, displayColour(palette.primaryText));
    const auto area = getLocalBounds().reduced(answerPadding).withHeight(wordsHeight(words_, getWidth()));
    layout.draw(graphics,
                area.toFloat()
                    .withTrimmedLeft(answerPadding / 2.0F)
                    .withSizeKeepingCentre(static_cast<float>(area.getWidth()), layout.getHeight()));
}

std::unique_ptr<juce::AccessibilityHandler> PanicAnswer::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::group);
}

}  // namespace quillo
