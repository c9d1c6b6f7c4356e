// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleButtons.hpp"

#include <utility>

#include "editor/Style.hpp"
#include "rules/TriggerChoices.hpp"

namespace quillo {

namespace {

constexpr MyWrappingHStack::Spacing spacing{style::fieldGap, style::fieldGap};

int indent(int width) {
    return width < style::narrowCard ? 0 : style::sectionLabelWidth;
}

}  // namespace

RuleButtons::RuleButtons(Binding<RuleOutputEntry> ruleOutput, std::function<void()> onDuplicate,
                         std::function<void()> onDelete, std::function<void()> onSend)
    : ruleOutput_(std::move(ruleOutput)),
      duplicate_("Duplicate", std::move(onDuplicate)),
      delete_("Delete", std::move(onDelete)),
      send_("Send", std::move(onSend)),
      stack_(spacing) {
    send_.setAccented(true);
    addAndMakeVisible(stack_);
    for (auto* button : {&duplicate_, &delete_, &send_}) {
        button->setVisible(true);
        stack_.add(*button);
    }
    refresh();
}

void RuleButtons::refresh() {
    const bool fixed = isFixed(ruleOutput_.get());
    send_.setEnabled(fixed);
    send_.setTooltip(
        fixed ? juce::String()
              : juce::String("This message takes something from its trigger, so it cannot be sent by hand"));
}

int RuleButtons::heightFor(int width) {
    const MyTextButton duplicate("Duplicate", {});
    const MyTextButton remove("Delete", {});
    const MyTextButton send("Send", {});
    std::vector<juce::Point<int>> sizes;
    for (const auto* button : {&duplicate, &remove, &send}) {
        sizes.emplace_back(button->preferredWidth(), button->preferredHeight());
    }
    return MyWrappingHStack::height(sizes, spacing, width - indent(width));
}

void RuleButtons::resized() {
    stack_.setBounds(getLocalBounds().withTrimmedLeft(indent(getWidth())));
}

void RuleButtons::parentHierarchyChanged() {
    const auto palette = environment<PaletteKey>(*this);
    set<MyPrimaryColor>(palette.delayInput);
    set<MySecondaryColor>(palette.delayInputSecondaryColor);
}

}  // namespace quillo
