// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleButtons.hpp"

#include <utility>
#include <vector>

#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr MyWrappingHStack::Spacing buttonSpacing{style::fieldGap, style::fieldGap};

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
        made.emplace_back(style::buttonHeight, style::buttonHeight);
        return made;
    }();
    return sizes;
}

}  // namespace

RuleButtons::RuleButtons(std::function<juce::String()> whyNotSent, Actions actions)
    : whyNotSent_(std::move(whyNotSent)),
      actions_(std::move(actions)),
      duplicate_(duplicateLabel, actions_.onDuplicate),
      delete_(deleteLabel, actions_.onDelete),
      send_(sendLabel, actions_.onSend),
      more_(
          "More", IconName::more, [this] { actions_.onMore(more_); }, style::buttonHeight),
      stack_(buttonSpacing) {
    addAndMakeVisible(stack_);
    const std::vector<juce::Component*> buttons{&duplicate_, &delete_, &send_, &more_};
    for (auto* button : buttons) {
        button->setVisible(true);
    }
    stack_.setViews(buttons);
    refresh();
}

void RuleButtons::refresh() {
    const auto reason = whyNotSent_();
    send_.setEnabled(reason.isEmpty());
    send_.setTooltip(reason);
}

int RuleButtons::heightFor(int width) {
    return MyWrappingHStack::height(sizes(), buttonSpacing, width);
}

int RuleButtons::widthInALine() {
    return MyWrappingHStack::widthInARow(sizes(), buttonSpacing);
}

void RuleButtons::resized() {
    stack_.setBounds(getLocalBounds());
}

void RuleButtons::parentHierarchyChanged() {
    const auto palette = environment<PaletteKey>(*this);
    set<MyPrimaryColor>(palette.primaryText);
    send_.setColours(palette.delayInput, palette.delayInputSecondaryColor);
}

}  // namespace quillo
