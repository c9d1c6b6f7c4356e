// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/NewRuleSelector.hpp"

#include <algorithm>
#include <utility>
#include <vector>

#include "editor/JuceText.hpp"
#include "editor/PopupMenuOverlay.hpp"
#include "editor/Style.hpp"
#include "rules/MIDIVocabulary.hpp"

namespace quillo {

namespace {

constexpr int verticalMargin = 8;
constexpr int buttonHeight = 26;

}  // namespace

NewRuleSelector::NewRuleSelector(std::function<void(const MIDIRuleType&)> onAdd,
                                 std::function<void(juce::Component&)> onLearn)
    : onAdd_(std::move(onAdd)), onLearn_(std::move(onLearn)), button_("Add new", [this] { openMenu(); }) {
    addAndMakeVisible(button_);
}

int NewRuleSelector::preferredHeight() {
    return buttonHeight + 2 * verticalMargin;
}

void NewRuleSelector::openMenu() {
    std::vector<juce::String> labels;
    for (const auto& item : outputTypeMenu()) {
        labels.push_back(juceText(item.label));
    }
    labels.push_back(juceText("Learn a trigger …"));
    PopupMenuOverlay::open(button_, button_.getLocalBounds(), {"Add new", std::move(labels), {}},
                           [selector = SafePointer(this)](std::size_t row) {
                               if (selector != nullptr) {
                                   selector->pick(row);
                               }
                           });
}

void NewRuleSelector::pick(std::size_t row) {
    if (row < outputTypeMenu().size()) {
        onAdd_(outputTypeMenu()[row].value);
    } else {
        onLearn_(button_);
    }
}

void NewRuleSelector::resized() {
    const bool narrow = environment<MySizeCategoryKey>(*this) == MySizeCategory::small;
    const auto width = narrow ? getWidth() : button_.preferredWidth() + 2 * style::buttonPadding;
    button_.setBounds(getLocalBounds().withSizeKeepingCentre(std::min(width, getWidth()), buttonHeight));
}

}  // namespace quillo
