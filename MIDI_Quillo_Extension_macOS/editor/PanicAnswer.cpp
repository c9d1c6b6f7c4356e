// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/PanicAnswer.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int margin = 12;
constexpr int padding = 8;
constexpr int gap = 2;

juce::TextLayout laidOut(const juce::String& words, int width, juce::Colour colour = {}) {
    juce::AttributedString text;
    text.append(words, textFont(style::valueText), colour);
    juce::TextLayout layout;
    layout.createLayout(text, static_cast<float>(std::max(1, width)));
    return layout;
}

/// What of its width the words have.
int wordsWidth(int width) {
    return width - 2 * padding - style::iconButtonSize;
}

int wordsHeight(const juce::String& words, int width) {
    const auto height = static_cast<int>(std::ceil(laidOut(words, wordsWidth(width)).getHeight()));
    return std::max(style::iconButtonSize - padding, height);
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
    area = area.reduced(margin, margin / 2);
    const auto text = textWidth(words_, style::valueText) + 1 + 2 * padding + style::iconButtonSize;
    const auto width = std::min(area.getWidth(), std::max(text, notesEnd_.preferredWidth() + 2 * padding));
    const auto height =
        2 * padding + wordsHeight(words_, width) + gap + notesEnd_.heightFor(width - 2 * padding);
    setBounds(area.removeFromRight(width).withHeight(height));
}

void PanicAnswer::resized() {
    auto area = getLocalBounds();
    close_.setBounds(area.withTrimmedTop(padding / 2 - 1)
                         .withTrimmedRight(padding / 2 - 1)
                         .removeFromRight(style::iconButtonSize)
                         .removeFromTop(style::iconButtonSize));
    area.reduce(padding, padding);
    area.removeFromTop(wordsHeight(words_, getWidth()) + gap);
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
    const auto layout = laidOut(words_, wordsWidth(getWidth()), displayColour(palette.primaryText));
    const auto area = getLocalBounds().reduced(padding).withHeight(wordsHeight(words_, getWidth()));
    layout.draw(graphics,
                area.toFloat()
                    .withTrimmedLeft(padding / 2.0F)
                    .withSizeKeepingCentre(static_cast<float>(area.getWidth()), layout.getHeight()));
}

std::unique_ptr<juce::AccessibilityHandler> PanicAnswer::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::group);
}

}  // namespace quillo
