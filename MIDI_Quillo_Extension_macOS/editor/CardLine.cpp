// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/CardLine.hpp"

#include <algorithm>
#include <span>
#include <utility>

#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/JuceText.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int wordGap = 7;
constexpr int markHeight = 18;

/// Stands for words that are not drawn.
juce::String leftOut() {
    return juceText("…");
}

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

int CardLine::width(std::size_t from, std::size_t to) const {
    int width = -wordGap;
    for (auto word = from; word < to; ++word) {
        width += wordGap + textWidth(words_[word].text, style::valueText);
    }
    return width;
}

juce::String CardLine::getTooltip() {
    return width(0, words_.size()) > textArea().getWidth() ? text() : juce::String();
}

juce::Rectangle<int> CardLine::textArea() const {
    return getLocalBounds().reduced(markMargin, 0);
}

/// What is found first is in sight, if need be without what stands before it.
std::size_t CardLine::firstShown() const {
    const auto found = std::ranges::find_if(words_, &Word::isFound);
    if (found == words_.end()) {
        return 0;
    }
    const auto last = static_cast<std::size_t>(found - words_.begin());
    std::size_t first = 0;
    for (auto room = textArea().getWidth(); first < last && width(first, last + 1) > room;) {
        room -= first == 0 ? textWidth(leftOut(), style::valueText) + wordGap : 0;
        ++first;
    }
    return first;
}

void CardLine::paintWord(juce::Graphics& graphics, const Word& word, juce::Rectangle<int>& area) const {
    const auto width = textWidth(word.text, style::valueText);
    const auto shown = area.withWidth(std::min(width, area.getWidth()));
    if (!shown.isEmpty() && word.isFound()) {
        const auto mark = shown.withSizeKeepingCentre(shown.getWidth() + 2 * markMargin, markHeight);
        graphics.setColour(displayColour(style::found));
        graphics.fillRoundedRectangle(mark.toFloat(), markMargin);
    }
    drawLine(graphics, word.text, area, style::valueText, word.colour);
    area.removeFromLeft(width + wordGap);
}

void CardLine::paint(juce::Graphics& graphics) {
    auto area = textArea();
    const auto first = firstShown();
    if (first > 0) {
        paintWord(graphics, {leftOut(), displayColour(Palette().secondaryText)}, area);
    }
    for (const auto& word : std::span(words_).subspan(first)) {
        paintWord(graphics, word, area);
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
