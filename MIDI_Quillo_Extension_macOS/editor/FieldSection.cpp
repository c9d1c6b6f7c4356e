// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FieldSection.hpp"

#include <algorithm>

#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr MyWrappingHStack::Spacing spacing{style::fieldGap, style::fieldGap};

}  // namespace

FieldSection::FieldSection(const juce::String& label) : label_(label), stack_(spacing) {
    setTitle(label);
    addAndMakeVisible(stack_);
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
}

void FieldSection::paint(juce::Graphics& graphics) {
    const auto narrow = isNarrow(getWidth());
    const auto area = narrow ? getLocalBounds().removeFromTop(style::sectionLabelHeight)
                             : FieldView::valueArea(getLocalBounds()
                                                        .removeFromTop(FieldView::preferredHeight(true))
                                                        .withTrimmedTop(style::captionHeight)
                                                        .removeFromLeft(style::sectionLabelWidth));
    graphics.setColour(displayColour(environment<PaletteKey>(*this).secondaryText));
    graphics.setFont(textFont(style::valueText));
    graphics.drawText(label_, area, narrow ? juce::Justification::topLeft : juce::Justification::centredLeft,
                      true);
}

}  // namespace quillo
