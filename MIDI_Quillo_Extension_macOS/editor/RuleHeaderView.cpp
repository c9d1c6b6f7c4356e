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
    : MyTextInputImpl("", juceText(nameCaption)), name_(std::move(name)) {
    setTitle(juceText(nameCaption));
}

juce::String RuleHeaderView::shownText() const {
    return juceText(format_.format(name_.get()));
}

juce::String RuleHeaderView::getTooltip() {
    return textWidth(shownText(), style::titleText, true) > textArea().getWidth() ? shownText()
                                                                                  : juce::String();
}

void RuleHeaderView::takeText(const juce::String& text) {
    auto name = format_.parse(text.toStdString());
    if (name != name_.get()) {
        name_.set(std::move(name));
    }
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
    const auto nameWidth = std::min(area.getWidth(), textWidth(name, style::titleText, true));
    graphics.setColour(displayColour(palette.primaryText));
    graphics.setFont(textFont(style::titleText, true));
    graphics.drawText(name, area.removeFromLeft(nameWidth), juce::Justification::centredLeft, true);
    const auto caption = juceText(nameCaption);
    area.removeFromLeft(name.isEmpty() ? 0 : captionGap);
    if (area.getWidth() >= textWidth(caption, style::captionText)) {
        graphics.setColour(displayColour(palette.secondaryText));
        graphics.setFont(textFont(style::captionText));
        graphics.drawText(caption, area, juce::Justification::centredLeft, false);
    }
}

}  // namespace quillo
