// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleButtons.hpp"

#include <utility>
#include <vector>

#include "editor/Style.hpp"
#include "rules/TriggerChoices.hpp"

namespace quillo {

namespace {

constexpr MyWrappingHStack::Spacing spacing{style::fieldGap, style::fieldGap};

constexpr const char* duplicateLabel = "Duplicate";
constexpr const char* deleteLabel = "Delete";
constexpr const char* sendLabel = "Send";

const std::vector<juce::Point<int>>& sizes() {
    static const auto sizes = [] {
        std::vector<juce::Point<int>> made;
        for (const auto* label : {duplicateLabel, deleteLabel, sendLabel}) {
            const MyTextButton button(label, {});
            made.emplace_back(button.preferredWidth(), button.preferredHeight());
        }
        return made;
    }();
    return sizes;
}

}  // namespace

RuleButtons::RuleButtons(Binding<RuleOutputEntry> ruleOutput, std::function<void()> onDuplicate,
                         std::function<void()> onDelete, std::function<void()> onSend)
    : ruleOutput_(std::move(ruleOutput)),
      duplicate_(duplicateLabel, std::move(onDuplicate)),
      delete_(deleteLabel, std::move(onDelete)),
      send_(sendLabel, std::move(onSend)),
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
    return MyWrappingHStack::height(sizes(), spacing, width);
}

int RuleButtons::widthInALine() {
    return MyWrappingHStack::widthInARow(sizes(), spacing);
}

void RuleButtons::resized() {
    stack_.setBounds(getLocalBounds());
}

void RuleButtons::parentHierarchyChanged() {
    const auto palette = environment<PaletteKey>(*this);
    set<MyPrimaryColor>(palette.delayInput);
    set<MySecondaryColor>(palette.delayInputSecondaryColor);
}

}  // namespace quillo
