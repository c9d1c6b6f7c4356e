// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleHeaderView.hpp"

#include <algorithm>
#include <utility>

#include "editor/Environment.hpp"
#include "editor/FieldPlan.hpp"
#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int captionGap = 8;

}  // namespace

RuleHeaderView::RuleHeaderView(Binding<std::string> name)
    : MyTextInputImpl("", juceText(nameCaption)), name_(std::move(name)), remark_(juceText(nameCaption)) {
    setTitle(juceText(nameCaption));
    setClicks(2);
}

void RuleHeaderView::setRemark(const juce::String& remark) {
    remark_ = remark;
    repaint();
}

juce::String RuleHeaderView::shownText() const {
    return juceText(format_.format(name_.get()));
}

juce::String RuleHeaderView::getTooltip() {
    return textWidth(shownText(), style::titleText, true) > textArea().getWidth() ? shownText()
                                                                                  : juce::String();
}

juce::MouseCursor RuleHeaderView::getMouseCursor() {
    const bool onText = isEditable() || typingArea().contains(getMouseXYRelative());
    return onText ? juce::MouseCursor::IBeamCursor : juce::MouseCursor::NormalCursor;
}

int RuleHeaderView::nameWidth() const {
    return std::min(textArea().getWidth(), textWidth(shownText(), style::titleText, true));
}

juce::String RuleHeaderView::textBehindName() const {
    return shownText().isEmpty() ? juceText(nameCaption) : remark_;
}

int RuleHeaderView::captionWidth() const {
    return textWidth(textBehindName(), style::captionText);
}

/// An empty name has its caption in its place.
juce::Rectangle<int> RuleHeaderView::typingArea() const {
    const auto width = shownText().isEmpty() ? captionWidth() : nameWidth();
    return boxArea().withLeft(textArea().getX()).withWidth(width);
}

void RuleHeaderView::takeText(const juce::String& text) {
    if (!isValue(text)) {
        name_.set(format_.parse(text.toStdString()));
    }
}

bool RuleHeaderView::isValue(const juce::String& text) const {
    return format_.parse(text.toStdString()) == name_.get();
}

bool RuleHeaderView::takeSteps(int /*steps*/) {
    return false;
}

void RuleHeaderView::paint(juce::Graphics& graphics) {
    if (isActive() || hasKeyboardFocus(true)) {
        MyTextInputImpl::paint(graphics);
    } else {
        paintValue(graphics);
    }
}

void RuleHeaderView::paintValue(juce::Graphics& graphics) {
    if (isEditable()) {
        return;
    }
    const auto palette = environment<PaletteKey>(*this);
    const auto name = shownText();
    auto area = textArea();
    graphics.setColour(displayColour(palette.primaryText));
    graphics.setFont(textFont(style::titleText, true));
    graphics.drawText(name, area.removeFromLeft(nameWidth()), juce::Justification::centredLeft, true);
    area.removeFromLeft(name.isEmpty() ? 0 : captionGap);
    if (area.getWidth() >= captionWidth()) {
        graphics.setColour(displayColour(palette.secondaryText));
        graphics.setFont(textFont(style::captionText));
        graphics.drawText(textBehindName(),
                          onBaseline(area, graphics.getCurrentFont(), textFont(style::titleText, true)),
                          juce::Justification::centredLeft, false);
    }
}

}  // namespace quillo
