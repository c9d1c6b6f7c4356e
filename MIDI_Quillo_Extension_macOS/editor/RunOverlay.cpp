// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RunOverlay.hpp"

#include <utility>

#include "editor/AlertView.hpp"
#include "editor/EditorText.hpp"
#include "editor/Fonts.hpp"
#include "editor/OverlayHost.hpp"
#include "editor/PanicKey.hpp"
#include "editor/PopupMenuOverlay.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int runPanelWidth = 290;
constexpr int textWidthInPanel = 86;
constexpr int runTitleHeight = 18;
constexpr int runLineHeight = 14;
constexpr int runGap = 8;
/// Room between two texts, for the word between them.
constexpr int wordRoom = 28;
constexpr int panelHeight = runTitleHeight + style::captionHeight + style::boxHeight + runGap + runLineHeight;

}  // namespace

void RunOverlay::open(FieldView& field, RunQuestion question) {
    auto* host = OverlayHost::find(field);
    if (host == nullptr || showsAlert(*host)) {
        return;
    }
    const auto anchor = host->overlayView().getLocalArea(&field, field.boxArea());
    auto overlay = std::make_unique<RunOverlay>(std::move(question), anchor);
    overlay->set<MyPrimaryColor>(environment<MyPrimaryColor>(field));
    overlay->set<MySecondaryColor>(environment<MySecondaryColor>(field));
    host->showOverlay(std::move(overlay));
}

RunOverlay::RunOverlay(RunQuestion question, juce::Rectangle<int> anchor)
    : question_(std::move(question)), anchor_(anchor), set_("Set", [this] { confirm(); }) {
    setTitle(question_.title);
    setWantsKeyboardFocus(true);
    setFocusContainerType(FocusContainerType::keyboardFocusContainer);
    for (const auto& asked : question_.texts) {
        auto text = std::make_unique<EditorText>(asked.caption);
        text->setTitle(asked.caption);
        text->setText(asked.text, false);
        text->setSelectAllWhenFocused(true);
        text->setIndents(style::fieldPadding, 0);
        text->setJustification(juce::Justification::centredLeft);
        text->onTextChange = [this] { refresh(); };
        text->onReturnKey = [this] { confirm(); };
        text->onEscapeKey = [this] { close(); };
        addAndMakeVisible(*text);
        texts_.push_back(std::move(text));
    }
    addAndMakeVisible(set_);
    refresh();
}

void RunOverlay::refresh() {
    juce::StringArray typed;
    for (const auto& text : texts_) {
        typed.add(text->getText());
    }
    outcome_ = question_.outcome(typed);
    set_.setEnabled(outcome_.set != nullptr);
    repaint();
}

/// Text fields report a change a moment later.
void RunOverlay::confirm() {
    refresh();
    if (const auto change = outcome_.set) {
        close();
        change();
    }
}

void RunOverlay::close() {
    if (auto* host = OverlayHost::find(*this)) {
        host->closeOverlay();
    }
}

void RunOverlay::dress(juce::TextEditor& text) const {
    const auto palette = environment<PaletteKey>(*this);
    const auto colour = displayColour(environment<MyPrimaryColor>(*this));
    text.applyFontToAllText(textFont(style::valueText));
    text.applyColourToAllText(colour);
    text.setColour(juce::TextEditor::textColourId, colour);
    text.setColour(juce::TextEditor::backgroundColourId,
                   displayColour(style::lifted(palette.background, style::boxLift)));
    text.setColour(juce::TextEditor::outlineColourId, displayColour(style::edge(palette)));
    text.setColour(juce::TextEditor::focusedOutlineColourId, colour);
    text.setColour(juce::CaretComponent::caretColourId, colour);
}

void RunOverlay::parentHierarchyChanged() {
    const auto palette = environment<PaletteKey>(*this);
    set<MyBackground>(style::lifted(palette.background, style::menuLift));
    for (const auto& text : texts_) {
        dress(*text);
    }
}

void RunOverlay::focusGained(FocusChangeType /*cause*/) {
    texts_.front()->grabKeyboardFocus();
}

void RunOverlay::resized() {
    panel_ = PopupMenuOverlay::place(anchor_, {runPanelWidth, panelHeight + 2 * padding}, getLocalBounds());
    auto row = inside();
    row.removeFromTop(runTitleHeight + style::captionHeight);
    row = row.removeFromTop(style::boxHeight);
    for (const auto& text : texts_) {
        text->setBounds(row.removeFromLeft(textWidthInPanel));
        row.removeFromLeft(wordRoom);
    }
    set_.setBounds(row.removeFromRight(set_.preferredWidth()));
}

void RunOverlay::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const auto primary = environment<MyPrimaryColor>(*this);
    const auto secondary = displayColour(palette.secondaryText);
    juce::DropShadow(juce::Colours::black.withAlpha(0.6F), 12, {0, 3}).drawForRectangle(graphics, panel_);
    graphics.setColour(displayColour(environment<MyBackground>(*this)));
    graphics.fillRoundedRectangle(panel_.toFloat(), style::buttonCorner);
    graphics.setColour(displayColour(style::edge(palette)));
    graphics.drawRoundedRectangle(panel_.toFloat().reduced(0.5F), style::buttonCorner, 1);
    auto area = inside();
    const auto title = area.removeFromTop(runTitleHeight);
    graphics.setColour(displayColour(primary));
    graphics.setFont(textFont(style::valueText, true));
    graphics.drawText(question_.title, title, juce::Justification::topLeft, true);
    graphics.setFont(textFont(style::valueText));
    graphics.setColour(secondary);
    graphics.drawText(outcome_.count, title, juce::Justification::topRight, false);
    graphics.setFont(textFont(style::captionText));
    graphics.setColour(displayColour(style::caption(primary, environment<MySecondaryColor>(*this))));
    for (std::size_t index = 0; index < texts_.size(); ++index) {
        const auto box = texts_[index]->getBounds();
        graphics.drawText(question_.texts[index].caption,
                          box.withY(area.getY()).withHeight(style::captionHeight).withTrimmedLeft(2),
                          juce::Justification::topLeft, false);
        if (index > 0) {
            const auto between = box.withX(box.getX() - wordRoom).withWidth(wordRoom);
            graphics.setColour(secondary);
            graphics.drawText("to", between, juce::Justification::centred, false);
        }
    }
    graphics.setColour(secondary);
    graphics.drawFittedText(outcome_.words, inside().removeFromBottom(runLineHeight),
                            juce::Justification::centredLeft, 1);
}

void RunOverlay::mouseDown(const juce::MouseEvent& event) {
    if (!panel_.contains(event.getPosition())) {
        close();
    }
}

/// What its parts have no use for.
bool RunOverlay::keyPressed(const juce::KeyPress& key) {
    if (isPanicKey(key)) {
        return false;
    }
    if (key.isKeyCode(juce::KeyPress::tabKey)) {
        getCurrentlyFocusedComponent()->moveKeyboardFocusToSibling(!key.getModifiers().isShiftDown());
    } else if (key == juce::KeyPress::escapeKey) {
        close();
    } else if (key == juce::KeyPress::returnKey) {
        confirm();
    }
    return true;
}

std::unique_ptr<juce::AccessibilityHandler> RunOverlay::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::dialogWindow);
}

}  // namespace quillo
