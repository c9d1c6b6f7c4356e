// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FieldSection.hpp"

#include <algorithm>
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
    const auto found = found_;
    mark({});
    auto before = std::exchange(fields_, {});
    std::vector<juce::Component*> views;
    for (const auto& plan : plans) {
        fields_.push_back(fieldFor(plan, before));
        views.push_back(fields_.back().get());
    }
    const auto left = std::ranges::find_if(
        before, [](const auto& field) { return field != nullptr && field->hasKeyboardFocus(true); });
    stack_.setViews(views);
    if (left != before.end()) {
        const auto place = std::min<std::ptrdiff_t>(left - before.begin(), std::ssize(fields_) - 1);
        fields_[static_cast<std::size_t>(place)]->field().grabKeyboardFocus();
    }
    mark(found);
    resized();
    repaint();
}

/// The one of these under its caption, or a new one.
std::unique_ptr<ColoredField> FieldSection::fieldFor(const FieldPlan& plan, Fields& before) {
    const auto same = std::ranges::find_if(before, [&plan](const auto& field) {
        return field != nullptr && field->field().caption() == plan.caption;
    });
    auto field =
        same != before.end() ? std::move(*same) : std::make_unique<ColoredField>(plan.make(), plan.colors);
    const bool hadMenu = field->field().hasChevron();
    field->setLeastWidth(plan.leastWidth);
    field->field().setExtras(plan.extras);
    plan.offer(field->field());
    field->setVisible(true);
    if (field->field().hasChevron() != hadMenu) {
        field->field().invalidateAccessibilityHandler();
    }
    return field;
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
