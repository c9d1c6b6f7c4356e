// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FieldSection.hpp"

#include <algorithm>

#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr MyWrappingHStack::Spacing spacing{style::fieldGap, style::fieldGap};
constexpr int buttonGap = 6;

}  // namespace

FieldSection::FieldSection(const juce::String& label) : label_(label), stack_(spacing) {
    setTitle(label);
    addAndMakeVisible(stack_);
}

void FieldSection::setLabelButton(juce::Component& button, int size) {
    labelButton_ = &button;
    button.setSize(size, size);
    button.setExplicitFocusOrder(1);
    addAndMakeVisible(button);
}

void FieldSection::setFields(const FieldPlans& plans) {
    stack_.clear();
    fields_.clear();
    for (const auto& plan : plans) {
        fields_.push_back(std::make_unique<ColoredField>(plan.make(), plan.colors, plan.leastWidth));
        fields_.back()->setVisible(true);
        stack_.add(*fields_.back());
    }
    resized();
    repaint();
}

void FieldSection::refresh() {
    for (const auto& field : fields_) {
        field->field().refresh();
    }
    stack_.resized();
}

bool FieldSection::isNarrow(int width) {
    return width < style::narrowCard;
}

int FieldSection::stackWidth(int width) {
    return std::max(0, isNarrow(width) ? width : width - style::sectionLabelWidth);
}

int FieldSection::heightFor(const FieldPlans& plans, int width) {
    std::vector<juce::Point<int>> sizes;
    sizes.reserve(plans.size());
    for (const auto& plan : plans) {
        sizes.push_back(plan.size());
    }
    const auto label = isNarrow(width) ? style::sectionLabelHeight : 0;
    return label + MyWrappingHStack::height(sizes, spacing, stackWidth(width));
}

void FieldSection::resized() {
    auto area = getLocalBounds();
    if (isNarrow(area.getWidth())) {
        area.removeFromTop(style::sectionLabelHeight);
    } else {
        area.removeFromLeft(style::sectionLabelWidth);
    }
    stack_.setBounds(area);
    stack_.resized();
    if (labelButton_ != nullptr) {
        const auto label = labelArea();
        const auto x = label.getX() + textWidth(label_, style::valueText) + buttonGap;
        labelButton_->setTopLeftPosition(x, label.getCentreY() - labelButton_->getHeight() / 2);
    }
}

juce::Rectangle<int> FieldSection::labelArea() const {
    if (isNarrow(getWidth())) {
        return getLocalBounds().removeFromTop(style::sectionLabelHeight);
    }
    return FieldView::valueArea(getLocalBounds()
                                    .removeFromTop(FieldView::preferredHeight(true))
                                    .withTrimmedTop(style::captionHeight)
                                    .removeFromLeft(style::sectionLabelWidth));
}

void FieldSection::paint(juce::Graphics& graphics) {
    graphics.setColour(displayColour(environment<PaletteKey>(*this).secondaryText));
    graphics.setFont(textFont(style::valueText));
    graphics.drawText(label_, labelArea(),
                      isNarrow(getWidth()) ? juce::Justification::topLeft : juce::Justification::centredLeft,
                      true);
}

}  // namespace quillo
