// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FieldView.hpp"

#include <algorithm>
#include <utility>

#include "editor/Environment.hpp"
#include "editor/FocusRing.hpp"
#include "editor/Fonts.hpp"
#include "editor/Icons.hpp"
#include "editor/PopupMenuOverlay.hpp"
#include "editor/Style.hpp"

namespace quillo {
namespace {

/// The caption stands a little further in than the box.
constexpr int captionIndent = 2;

int chevronRoom(bool chevron) {
    return chevron ? style::chevronGap + style::chevronSize : 0;
}

}  // namespace

FieldView::FieldView(juce::String caption) : caption_(std::move(caption)) {
    setTitle(caption_);
    setWantsKeyboardFocus(true);
    setMouseClickGrabsKeyboardFocus(false);
}

void FieldView::refresh() {
    repaint();
    if (auto* handler = getAccessibilityHandler()) {
        handler->notifyAccessibilityEvent(juce::AccessibilityEvent::valueChanged);
    }
}

void FieldView::openMenu(std::vector<juce::String> labels, std::optional<std::size_t> current,
                         std::function<void(std::size_t)> pick) {
    std::optional<std::size_t> extra;
    if (extras_.row) {
        extra = std::min(extras_.row->position, labels.size());
        labels.insert(labels.begin() + static_cast<std::ptrdiff_t>(*extra), extras_.row->label);
        current = current && *current >= *extra ? *current + 1 : current;
    }
    current = shownInstead().isNotEmpty() ? extra : current;
    const auto pickRow = [field = SafePointer(this), pick = std::move(pick), extra](std::size_t row) {
        if (field != nullptr && row == extra) {
            const auto pickExtra = field->extras_.row->pick;
            pickExtra(*field);
        } else if (field != nullptr) {
            pick(row - (extra && row > *extra ? 1 : 0));
        }
        if (field != nullptr) {
            field->refresh();
        }
    };
    PopupMenuOverlay::open(*this, boxArea(), {getTitle(), std::move(labels), current, {}, extras_.typed},
                           pickRow);
}

int FieldView::preferredWidth() const {
    return preferredWidth(caption_, shownText(), hasChevron());
}

int FieldView::preferredHeight() const {
    return preferredHeight(caption_.isNotEmpty());
}

int FieldView::preferredWidth(const juce::String& caption, const juce::String& text, bool chevron) {
    const auto captionWidth =
        caption.isEmpty() ? 0 : textWidth(caption, style::captionText) + 2 * captionIndent;
    const auto boxWidth = textWidth(text, style::valueText) + 2 * style::fieldPadding + chevronRoom(chevron);
    return std::max({captionWidth, boxWidth, style::fieldLeastWidth});
}

int FieldView::preferredHeight(bool captioned) {
    return style::boxHeight + (captioned ? style::captionHeight : 0);
}

juce::String FieldView::getTooltip() {
    const auto text = shownText();
    return textWidth(text, style::valueText) > textArea().getWidth() ? text : juce::String();
}

juce::Rectangle<int> FieldView::boxArea() const {
    return caption_.isEmpty() ? getLocalBounds() : getLocalBounds().withTrimmedTop(style::captionHeight);
}

juce::Rectangle<int> FieldView::valueArea(juce::Rectangle<int> box) {
    return box.withTrimmedBottom(static_cast<int>(style::underline) / 2);
}

juce::Rectangle<int> FieldView::textArea() const {
    return valueArea(boxArea()).reduced(style::fieldPadding, 0).withTrimmedRight(chevronRoom(hasChevron()));
}

juce::Rectangle<int> FieldView::chevronArea() const {
    return hasChevron() ? boxArea().removeFromRight(chevronRoom(true) + style::fieldPadding)
                        : juce::Rectangle<int>();
}

bool FieldView::isActive() const {
    return isMouseOver(true);
}

void FieldView::paint(juce::Graphics& graphics) {
    if (!isEnabled()) {
        graphics.beginTransparencyLayer(style::disabledAlpha);
    }
    graphics.setColour(displayColour(
        style::caption(environment<MyPrimaryColor>(*this), environment<MySecondaryColor>(*this))));
    graphics.setFont(textFont(style::captionText));
    graphics.drawText(caption_,
                      getLocalBounds().removeFromTop(style::captionHeight).withTrimmedLeft(captionIndent),
                      juce::Justification::topLeft, true);
    paintBox(graphics);
    paintValue(graphics);
    if (hasChevron()) {
        const auto area =
            chevronArea().withTrimmedRight(style::fieldPadding - 2).removeFromRight(style::chevronSize);
        drawIcon(graphics, IconName::pickerOpen,
                 area.toFloat().withSizeKeepingCentre(style::chevronSize, style::chevronSize),
                 displayColour(environment<MyPrimaryColor>(*this)));
    }
    if (!isEnabled()) {
        graphics.endTransparencyLayer();
    }
}

void FieldView::paintBox(juce::Graphics& graphics) {
    const auto ground = environment<MyBackground>(*this);
    const auto box = boxArea().toFloat();
    const auto palette = environment<PaletteKey>(*this);
    const bool lit = isEnabled() && isActive();
    graphics.setColour(displayColour(style::lifted(ground, style::boxLift)));
    graphics.fillRoundedRectangle(box, style::fieldCorner);
    graphics.setColour(displayColour(lit ? style::litEdge(palette) : style::edge(palette)));
    graphics.drawRoundedRectangle(box.reduced(0.5F), style::fieldCorner, 1);
    paintUnderline(graphics);
    if (hasKeyboardFocus(true)) {
        drawFocusRing(graphics, boxArea(), style::fieldCorner,
                      displayColour(environment<MyPrimaryColor>(*this)));
    }
}

void FieldView::paintUnderline(juce::Graphics& graphics) {
    const auto box = boxArea().toFloat();
    juce::Path crescent;
    crescent.addRoundedRectangle(box, style::fieldCorner);
    crescent.addRoundedRectangle(box.translated(0, -style::underline), style::fieldCorner);
    crescent.setUsingNonZeroWinding(false);
    const juce::Graphics::ScopedSaveState state(graphics);
    graphics.reduceClipRegion(boxArea().removeFromBottom(style::boxHeight / 2));
    graphics.setColour(displayColour(environment<MySecondaryColor>(*this)));
    graphics.fillPath(crescent);
}

void FieldView::paintValue(juce::Graphics& graphics) {
    paintText(graphics, shownText(), displayColour(environment<MyPrimaryColor>(*this)));
}

void FieldView::paintText(juce::Graphics& graphics, const juce::String& text, juce::Colour colour) {
    drawLine(graphics, text, textArea(), style::valueText, colour);
}

void FieldView::mouseEnter(const juce::MouseEvent& /*event*/) {
    repaint();
}

void FieldView::mouseExit(const juce::MouseEvent& /*event*/) {
    repaint();
}

void FieldView::focusGained(FocusChangeType /*cause*/) {
    repaint();
}

void FieldView::focusLost(FocusChangeType /*cause*/) {
    repaint();
}

void FieldView::enablementChanged() {
    repaint();
}

}  // namespace quillo
