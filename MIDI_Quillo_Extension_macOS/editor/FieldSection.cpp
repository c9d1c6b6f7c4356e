// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FieldSection.hpp"

#include <utility>

#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr MyWrappingHStack::Spacing fieldSpacing{style::fieldGap, style::fieldGap};

}  // namespace

FieldSizes sizesOf(const FieldPlans& plans) {
    FieldSizes sizes;
    sizes.reserve(plans.size());
    for (const auto& plan : plans) {
        sizes.push_back(plan.size());
    }
    return sizes;
}

FieldSection::FieldSection(const juce::String& title) : stack_(fieldSpacing) {
    setTitle(title);
    addAndMakeVisible(stack_);
}

void FieldSection::setFields(const FieldPlans& plans) {
    stack_.clear();
    fields_.clear();
    for (const auto& plan : plans) {
        fields_.push_back(std::make_unique<ColoredField>(plan.make(), plan.colors, plan.leastWidth));
        fields_.back()->field().setExtras(plan.extras);
        fields_.back()->setVisible(true);
        stack_.add(*fields_.back());
    }
    mark(std::exchange(found_, {}));
    resized();
    repaint();
}

void FieldSection::mark(const std::set<std::size_t>& found) {
    for (std::size_t field = 0; field < fields_.size(); ++field) {
        if (found.contains(field) != found_.contains(field)) {
            fields_[field]->set<MyBackground>(found.contains(field) ? style::found
                                                                    : environment<MyBackground>(*this));
            fields_[field]->repaint();
        }
    }
    found_ = found;
}

void FieldSection::refresh() {
    for (const auto& field : fields_) {
        field->field().refresh();
    }
    stack_.resized();
}

int FieldSection::heightFor(const FieldSizes& fields, int width) {
    return MyWrappingHStack::height(fields, fieldSpacing, width);
}

int FieldSection::widthInARow(const FieldSizes& fields) {
    return MyWrappingHStack::widthInARow(fields, fieldSpacing);
}

void FieldSection::resized() {
    stack_.setBounds(getLocalBounds());
    stack_.resized();
}

}  // namespace quillo
