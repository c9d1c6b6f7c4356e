// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ChosenCards.hpp"

#include <algorithm>
#include <iterator>
#include <set>

#include "editor/JuceText.hpp"
#include "editor/MyDragAndDropForEachDragHandle.hpp"
#include "editor/PresetExchange.hpp"
#include "persistence/DecodingError.hpp"

namespace quillo {

namespace {

bool isCommand(const juce::KeyPress& key, char character) {
    return key == juce::KeyPress(character, juce::ModifierKeys::commandModifier, 0);
}

bool isDelete(const juce::KeyPress& key) {
    return key == juce::KeyPress::deleteKey || key == juce::KeyPress::backspaceKey;
}

}  // namespace

/// The rules of these cards, in the list's order.
RuleIds ChosenCards::rulesOf(const std::vector<UUID>& cards) const {
    const std::set<UUID> wanted(cards.begin(), cards.end());
    RuleIds ids;
    for (const auto& card : editor_.cards()) {
        const auto first = editor_.rules().begin() + static_cast<std::ptrdiff_t>(card.first);
        if (wanted.contains(first->id)) {
            std::transform(first, first + static_cast<std::ptrdiff_t>(card.count), std::back_inserter(ids),
                           [](const auto& element) { return element.id; });
        }
    }
    return ids;
}

RuleIds ChosenCards::rulesWith(const UUID& card) const {
    return rulesOf(list_.selection().togetherWith(card));
}

bool ChosenCards::areSeveral(const UUID& card) const {
    return list_.selection().togetherWith(card).size() > 1;
}

/// Right behind the card above them, or right before the one below: the list need not show all cards.
void ChosenCards::moved(const std::vector<UUID>& cards, std::size_t newPosition) {
    const auto& items = list_.items();
    const bool areFirst = newPosition == 0;
    const auto neighbour = editor_.cardOf(items[areFirst ? cards.size() : newPosition - 1]);
    const auto moved = rulesOf(cards);
    const std::set<UUID> isMoved(moved.begin(), moved.end());
    std::size_t before = 0;
    for (const auto& element : editor_.rules()) {
        if (areFirst && element.id == neighbour.front()) {
            break;
        }
        before += isMoved.contains(element.id) ? 0U : 1U;
        if (!areFirst && element.id == neighbour.back()) {
            break;
        }
    }
    editor_.move(moved, before);
}

bool ChosenCards::keyPressed(const juce::KeyPress& key) {
    const auto card = list_.itemWithFocus();
    if (isCommand(key, 'v') && (card || list_.hasKeyboardFocus(true))) {
        paste(card);
        return true;
    }
    const bool cuts = isCommand(key, 'x');
    const bool removes = cuts || (isDelete(key) && MyDragAndDropForEachDragHandle::isOneFocused());
    if (!card || !(removes || isCommand(key, 'c'))) {
        return false;
    }
    if (removes && MyDragAndDropForEach::bringIntoSight(*juce::Component::getCurrentlyFocusedComponent())) {
        return true;
    }
    const bool isCopied = (isDelete(key) && !cuts) || copy(rulesWith(*card));
    if (removes && isCopied) {
        remove(*card, cuts ? "Cut" : "Delete");
    }
    return true;
}

bool ChosenCards::copy(const RuleIds& rules) {
    try {
        clipboard_.set(juceText(textOfRules(editor_, rules)));
        return true;
    } catch (const EncodingError& error) {
        editor_.alert(error.what());
        return false;
    }
}

/// The card that comes up to their place has the keyboard.
void ChosenCards::remove(const UUID& card, const std::string& verb) {
    const auto gone = list_.selection().togetherWith(card);
    const auto position = *list_.positionOf(gone.front());
    editor_.remove(rulesWith(card), verb);
    giveKeyboardTo(position);
}

/// An alert keeps it.
void ChosenCards::giveKeyboardTo(std::size_t position) {
    if (!editor_.alertErrorMessage()) {
        list_.focus(position);
    }
}

/// What was pasted is chosen then. The list may have shown some of the cards only.
void ChosenCards::paste(const std::optional<UUID>& behind) {
    std::set<UUID> before;
    for (const auto& element : editor_.rules()) {
        before.insert(element.id);
    }
    const auto text = clipboard_.get().toStdString();
    if (!pasteText(text, behind ? rulesWith(*behind) : RuleIds(), editor_)) {
        return;
    }
    std::vector<UUID> pasted;
    std::ranges::copy_if(list_.items(), std::back_inserter(pasted),
                         [&before](const UUID& item) { return !before.contains(item); });
    list_.select(pasted);
    const auto first = std::ranges::find_first_of(list_.items(), pasted);
    giveKeyboardTo(static_cast<std::size_t>(first - list_.items().begin()));
}

}  // namespace quillo
