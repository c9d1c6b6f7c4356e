// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/AlertView.hpp"

#include <algorithm>
#include <utility>

#include "editor/Fonts.hpp"
#include "editor/JuceText.hpp"
#include "editor/PanicKey.hpp"
#include "editor/Style.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

constexpr int widest = 360;
constexpr int alertMargin = 14;
constexpr int alertTitleHeight = 26;
constexpr int alertLineHeight = 16;

}  // namespace

AlertView::AlertView(const juce::String& message, std::function<void()> onOK)
    : message_(juceText(escapedLines(message.toStdString()))),
      onOK_(std::move(onOK)),
      ok_("OK", [this] { onOK_(); }) {
    setTitle("Error");
    setDescription(message_);
    setWantsKeyboardFocus(true);
    text_.setMultiLine(true);
    text_.setReadOnly(true);
    text_.setCaretVisible(false);
    text_.setScrollbarsShown(true);
    text_.setWantsKeyboardFocus(false);
    text_.setFont(textFont(style::valueText));
    text_.setBorder({});
    text_.setIndents(0, 0);
    for (const auto colour : {juce::TextEditor::backgroundColourId, juce::TextEditor::outlineColourId,
                              juce::TextEditor::focusedOutlineColourId, juce::TextEditor::shadowColourId}) {
        text_.setColour(colour, juce::Colours::transparentBlack);
    }
    text_.setText(message_, false);
    addAndMakeVisible(text_);
    addAndMakeVisible(ok_);
}

juce::Rectangle<int> AlertView::panel() const {
    const auto width = std::min(widest, getWidth() - 2 * alertMargin);
    const auto inside = std::max(1, width - 2 * alertMargin);
    const auto lines =
        1 + textWidth(message_, style::valueText) / inside + message_.retainCharacters("\n").length();
    const auto height =
        alertTitleHeight + (lines + 1) * alertLineHeight + style::buttonHeight + 3 * alertMargin;
    return getLocalBounds().withSizeKeepingCentre(width, std::min(height, getHeight() - alertMargin));
}

void AlertView::parentHierarchyChanged() {
    const auto palette = environment<PaletteKey>(*this);
    set<MyBackground>(style::lifted(palette.background, style::menuLift));
    set<MyPrimaryColor>(palette.primaryText);
    set<MySecondaryColor>(palette.secondaryText);
    text_.applyColourToAllText(displayColour(palette.primaryText));
}

void AlertView::resized() {
    auto area = panel().reduced(alertMargin);
    area.removeFromTop(alertTitleHeight);
    auto buttons = area.removeFromBottom(style::buttonHeight);
    ok_.setBounds(buttons.removeFromRight(std::min(buttons.getWidth(), std::max(60, ok_.preferredWidth()))));
    area.removeFromBottom(alertMargin / 2);
    text_.setBounds(area);
}

void AlertView::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    graphics.fillAll(juce::Colours::black.withAlpha(0.5F));
    const auto area = panel().toFloat();
    graphics.setColour(displayColour(environment<MyBackground>(*this)));
    graphics.fillRoundedRectangle(area, style::cardCorner);
    graphics.setColour(displayColour(style::edge(palette)));
    graphics.drawRoundedRectangle(area.reduced(0.5F), style::cardCorner, 1);
    graphics.setColour(displayColour(palette.primaryText));
    graphics.setFont(textFont(style::titleText, true));
    graphics.drawText("Error", panel().reduced(alertMargin).removeFromTop(alertTitleHeight),
                      juce::Justification::topLeft, true);
}

/// The part of a text in JUCE that scrolls, by the arrows, Page Up, Page Down, Home and End.
juce::Viewport& AlertView::textsView() const {
    return *dynamic_cast<juce::Viewport*>(text_.getChildComponent(0));
}

bool AlertView::keyPressed(const juce::KeyPress& key) {
    if (isPanicKey(key)) {
        return false;
    }
    if (key == juce::KeyPress::returnKey || key == juce::KeyPress::spaceKey ||
        key == juce::KeyPress::escapeKey) {
        const auto onOK = onOK_;
        onOK();
    } else {
        textsView().keyPressed(key);
    }
    return true;
}

std::unique_ptr<juce::AccessibilityHandler> AlertView::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::dialogWindow);
}

bool showsAlert(const OverlayHost& host) {
    return dynamic_cast<const AlertView*>(host.overlay()) != nullptr;
}

}  // namespace quillo
