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
constexpr int selectorButtonHeight = 26;

}  // namespace

NewRuleSelector::NewRuleSelector(Actions actions)
    : actions_(std::move(actions)), button_("Add new", [this] { openMenu(); }) {
    addAndMakeVisible(button_);
}

int NewRuleSelector::preferredHeight() {
    return selectorButtonHeight + 2 * verticalMargin;
}

void NewRuleSelector::openMenu() {
    std::vector<juce::String> labels;
    for (const auto& item : outputTypeMenu()) {
        labels.push_back(juceText(item.label));
    }
    labels.emplace_back("Notes as played");
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
        actions_.onAdd(outputTypeMenu()[row].value);
    } else if (row == outputTypeMenu().size()) {
        actions_.onNotesAsPlayed();
    } else {
        actions_.onLearn(button_);
    }
}

void NewRuleSelector::resized() {
    const bool narrow = environment<MySizeCategoryKey>(*this) == MySizeCategory::small;
    const auto width = narrow ? getWidth() : button_.preferredWidth() + 2 * style::buttonPadding;
    button_.setBounds(
        getLocalBounds().withSizeKeepingCentre(std::min(width, getWidth()), selectorButtonHeight));
}

}  // namespace quillo
