// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/CardLine.hpp"

#include <algorithm>
#include <utility>

#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/JuceText.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int wordGap = 7;
constexpr int markHeight = 18;

}  // namespace

CardLine::CardLine(std::function<void()> onClick) : onClick_(std::move(onClick)) {
    setMouseCursor(juce::MouseCursor::PointingHandCursor);
    setMouseClickGrabsKeyboardFocus(false);
}

void CardLine::show(const FieldPlans& trigger, const FieldPlans& output) {
    words_.clear();
    append(trigger, foundInTrigger_);
    words_.push_back({juceText("\u2192"), displayColour(Palette().secondaryText)});
    append(output, foundInOutput_);
    setTitle(text());
    repaint();
}

void CardLine::mark(std::set<std::size_t> trigger, std::set<std::size_t> output) {
    foundInTrigger_ = std::move(trigger);
    foundInOutput_ = std::move(output);
    repaint();
}

void CardLine::append(const FieldPlans& section, const std::set<std::size_t>& found) {
    for (const auto& word : wordsOf(section)) {
        if (word.text.isNotEmpty()) {
            words_.push_back({word.text, displayColour(word.colour), &found, word.field});
        }
    }
}

juce::String CardLine::text() const {
    juce::StringArray texts;
    for (const auto& word : words_) {
        texts.add(word.text);
    }
    return texts.joinIntoString(" ");
}

int CardLine::width() const {
    int width = -wordGap;
    for (const auto& word : words_) {
        width += wordGap + textWidth(word.text, style::valueText);
    }
    return width;
}

juce::String CardLine::getTooltip() {
    return width() > textArea().getWidth() ? text() : juce::String();
}

juce::Rectangle<int> CardLine::textArea() const {
    return getLocalBounds().reduced(markMargin, 0);
}

void CardLine::paint(juce::Graphics& graphics) {
    auto area = textArea();
    for (const auto& word : words_) {
        const auto width = textWidth(word.text, style::valueText);
        const auto shown = area.withWidth(std::min(width, area.getWidth()));
        if (!shown.isEmpty() && word.found != nullptr && word.found->contains(word.field)) {
            const auto mark = shown.withSizeKeepingCentre(shown.getWidth() + 2 * markMargin, markHeight);
            graphics.setColour(displayColour(style::found));
            graphics.fillRoundedRectangle(mark.toFloat(), markMargin);
        }
        drawLine(graphics, word.text, area, style::valueText, word.colour);
        area.removeFromLeft(width + wordGap);
    }
}

void CardLine::mouseUp(const juce::MouseEvent& event) {
    if (event.mouseWasClicked() && !event.mods.isPopupMenu()) {
        onClick_();
    }
}

std::unique_ptr<juce::AccessibilityHandler> CardLine::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::staticText);
}

}  // namespace quillo
