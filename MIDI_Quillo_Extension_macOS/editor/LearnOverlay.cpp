// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/LearnOverlay.hpp"

#include <algorithm>
#include <utility>

#include "editor/AlertView.hpp"
#include "editor/Fonts.hpp"
#include "editor/JuceText.hpp"
#include "editor/OverlayHost.hpp"
#include "editor/PanicKey.hpp"
#include "editor/PopupMenuOverlay.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int learnPanelWidth = 330;
constexpr int learnPadding = 8;
constexpr int learnTitleHeight = 20;
/// The panel opens where there is room for so many rows.
constexpr int rowsToExpect = 4;
constexpr int remarkGap = 10;

juce::String title() {
    return juceText("Play, or move a controller …");
}

}  // namespace

void LearnOverlay::open(juce::Component& opener, std::shared_ptr<QuilloModel> model, OnPick onPick) {
    auto* host = OverlayHost::find(opener);
    if (host == nullptr || showsAlert(*host)) {
        return;
    }
    const auto anchor = host->overlayView().getLocalArea(&opener, opener.getLocalBounds());
    host->showOverlay(std::make_unique<LearnOverlay>(std::move(model), anchor,
                                                     dynamic_cast<LearnButton*>(&opener), std::move(onPick)));
}

LearnOverlay::LearnOverlay(std::shared_ptr<QuilloModel> model, juce::Rectangle<int> anchor,
                           LearnButton* button, OnPick onPick)
    : model_(std::move(model)),
      anchor_(anchor),
      button_(button),
      onPick_(std::move(onPick)),
      heard_(model_->inLogCount()),
      observation_(model_->observeInLog([this] { hearNews(); })) {
    setTitle(title());
    setWantsKeyboardFocus(true);
    setFocusContainerType(FocusContainerType::keyboardFocusContainer);
    list_.setModel(this);
    list_.setTitle(title());
    list_.setRowHeight(style::menuRowHeight);
    list_.setMouseMoveSelectsRows(true);
    list_.setColour(juce::ListBox::backgroundColourId, juce::Colours::transparentBlack);
    list_.getViewport()->setScrollBarThickness(style::scrollBarWidth);
    list_.addMouseListener(this, true);
    addAndMakeVisible(list_);
    if (button_ != nullptr) {
        button_->setLearning(true);
    }
}

LearnOverlay::~LearnOverlay() {
    list_.removeMouseListener(this);
    list_.setModel(nullptr);
    if (button_ != nullptr) {
        button_->setLearning(false);
    }
}

/// The log keeps the newest entries; those before them are past hearing.
void LearnOverlay::hearNews() {
    const auto& log = model_->inLog();
    const auto fresh = std::min<std::uint64_t>(model_->inLogCount() - heard_, log.size());
    heard_ = model_->inLogCount();
    const auto now = std::chrono::steady_clock::now();
    for (auto entry = log.size() - fresh; entry < log.size(); ++entry) {
        learner_.hear(log[entry].variants, now);
    }
    showOffers();
}

bool LearnOverlay::isReachedFor() const {
    return pointed_ || highlightedRow() > 0;
}

void LearnOverlay::showOffers() {
    offers_ = isReachedFor() ? inShownOrder(offers_, learner_.offers()) : learner_.offers();
    list_.updateContent();
    if (highlightedRow() < 0 || !isReachedFor()) {
        list_.selectRow(0);
    }
    resized();
    list_.repaint();
    repaint();
}

int LearnOverlay::heightFor(int rows) {
    return learnTitleHeight + rows * style::menuRowHeight + 2 * learnPadding;
}

/// On the side of the anchor where a few rows find room, and no higher than what is offered.
juce::Rectangle<int> LearnOverlay::panelForOffers() const {
    const auto rows = std::max(1, static_cast<int>(offers_.size()));
    auto full = PopupMenuOverlay::place(anchor_, {learnPanelWidth, heightFor(std::max(rows, rowsToExpect))},
                                        getLocalBounds());
    const auto height = std::min(heightFor(rows), full.getHeight());
    return full.getBottom() <= anchor_.getY() ? full.removeFromBottom(height) : full.removeFromTop(height);
}

void LearnOverlay::resized() {
    panel_ = panelForOffers();
    list_.setBounds(panel_.reduced(learnPadding).withTrimmedTop(learnTitleHeight));
}

juce::Rectangle<int> LearnOverlay::rowArea(int row) const {
    return list_.getRowPosition(row, true) + list_.getPosition();
}

void LearnOverlay::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const auto panel = panel_.toFloat();
    juce::DropShadow(juce::Colours::black.withAlpha(0.6F), 12, {0, 3}).drawForRectangle(graphics, panel_);
    graphics.setColour(displayColour(style::lifted(palette.background, style::menuLift)));
    graphics.fillRoundedRectangle(panel, style::cardCorner);
    graphics.setColour(displayColour(style::edge(palette)));
    graphics.drawRoundedRectangle(panel.reduced(0.5F), style::cardCorner, 1);
    auto area = panel_.reduced(learnPadding);
    const auto line = area.removeFromTop(learnTitleHeight).withTrimmedBottom(4);
    graphics.setColour(displayColour(palette.secondaryText));
    graphics.setFont(textFont(style::valueText));
    graphics.drawText("Esc ends", line, juce::Justification::centredRight, false);
    if (offers_.empty()) {
        graphics.drawText("Nothing has come in yet", area.reduced(style::fieldPadding, 0),
                          juce::Justification::centredLeft, true);
    }
    graphics.setColour(displayColour(palette.triggerInput));
    graphics.setFont(textFont(style::valueText, true));
    graphics.drawText(title(), line, juce::Justification::centredLeft, true);
}

void LearnOverlay::paintListBoxItem(int row, juce::Graphics& graphics, int width, int height,
                                    bool highlighted) {
    if (row >= getNumRows()) {
        return;
    }
    const auto palette = environment<PaletteKey>(*this);
    const auto& offer = offers_[static_cast<std::size_t>(row)];
    auto area = juce::Rectangle<int>(width, height);
    if (highlighted) {
        graphics.setColour(displayColour(palette.triggerInput));
        graphics.fillRoundedRectangle(area.toFloat(), style::fieldCorner);
    }
    area.reduce(style::fieldPadding, 0);
    const auto remark = juceText(offer.remark);
    const auto room = std::min(textWidth(remark, style::captionText), area.getWidth() / 2);
    graphics.setColour(displayColour(highlighted ? palette.background : palette.secondaryText));
    graphics.setFont(textFont(style::captionText));
    graphics.drawText(remark, area.removeFromRight(room), juce::Justification::centredRight, true);
    drawLine(graphics, juceText(offer.words), area.withTrimmedRight(remarkGap), style::valueText,
             displayColour(highlighted ? palette.background : palette.primaryText));
}

void LearnOverlay::mouseDown(const juce::MouseEvent& event) {
    if (!panel_.contains(event.getEventRelativeTo(this).getPosition())) {
        close();
    }
}

void LearnOverlay::mouseMove(const juce::MouseEvent& event) {
    pointed_ = event.eventComponent != this;
}

void LearnOverlay::mouseExit(const juce::MouseEvent& event) {
    if (event.eventComponent != this && !list_.isMouseOver(true)) {
        pointed_ = false;
        list_.selectRow(0);
        showOffers();
    }
}

bool LearnOverlay::keyPressed(const juce::KeyPress& key) {
    if (isPanicKey(key)) {
        return false;
    }
    if (key == juce::KeyPress::escapeKey || key.isKeyCode(juce::KeyPress::tabKey)) {
        close();
    } else if (key == juce::KeyPress::spaceKey) {
        pick(highlightedRow());
    }
    return true;
}

void LearnOverlay::focusGained(FocusChangeType /*cause*/) {
    list_.grabKeyboardFocus();
}

std::unique_ptr<juce::AccessibilityHandler> LearnOverlay::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::dialogWindow);
}

void LearnOverlay::listBoxItemClicked(int row, const juce::MouseEvent& /*event*/) {
    pick(row);
}

juce::String LearnOverlay::getNameForRow(int row) {
    if (row < 0 || row >= getNumRows()) {
        return {};
    }
    const auto& offer = offers_[static_cast<std::size_t>(row)];
    return juceText(offer.words + ", " + offer.remark);
}

juce::String LearnOverlay::getTooltipForRow(int row) {
    const auto name = getNameForRow(row);
    const auto room = list_.getVisibleContentWidth() - 2 * style::fieldPadding - remarkGap;
    return textWidth(name, style::valueText) > room ? name : juce::String();
}

void LearnOverlay::pick(int row) {
    if (row < 0 || row >= getNumRows()) {
        return;
    }
    const auto onPick = std::move(onPick_);
    const auto triggers = offers_[static_cast<std::size_t>(row)].triggers;
    close();
    onPick(triggers);
}

void LearnOverlay::close() {
    if (auto* host = OverlayHost::find(*this)) {
        host->closeOverlay();
    }
}

}  // namespace quillo
