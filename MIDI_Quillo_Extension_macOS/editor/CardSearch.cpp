// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/CardSearch.hpp"

#include <set>
#include <utility>

#include "editor/MyTextInputImpl.hpp"

namespace quillo {

SearchActions CardSearch::actions() {
    return {[this](const juce::String& typed) { look(typed); }, [this](bool forward) { goToNext(forward); },
            [this] {
                if (finder_.current()) {
                    list_.focus(*finder_.current());
                }
            },
            [this] { end(); }, [this] { focusBefore_ = nullptr; }};
}

void CardSearch::begin(const juce::String& text) {
    if (!header_.searchField().hasKeyboardFocus(true)) {
        auto* focused = juce::Component::getCurrentlyFocusedComponent();
        focusBefore_ =
            header_.getParentComponent()->isParentOf(focused) ? MyTextInputImpl::around(focused) : nullptr;
    }
    header_.openSearch(text);
}

/// The first find comes into sight.
void CardSearch::look(const juce::String& typed) {
    finder_.look(typed);
    goToNext(true);
}

void CardSearch::goToNext(bool forward) {
    if (const auto found = finder_.goOn(list_.items(), forward)) {
        list_.scrollTo(*found);
    }
    show();
}

void CardSearch::end() {
    const bool hadKeyboard = header_.searchField().hasKeyboardFocus(true);
    const auto before = std::exchange(focusBefore_, nullptr);
    finder_.end();
    header_.closeSearch();
    show();
    if (hadKeyboard && before != nullptr && before->isShowing()) {
        before->grabKeyboardFocus();
    } else if (hadKeyboard) {
        juce::Component::unfocusAllComponents();
    }
}

RuleView::Found CardSearch::foundOn(const UUID& id) {
    if (!isOn()) {
        return {};
    }
    auto found = finder_.find(id);
    return {found.has_value(), finder_.current() == id, std::move(found).value_or(std::set<std::size_t>())};
}

/// A card that is new may have been one before, and read then.
void CardSearch::follow(const ShownCards::Changes& changes) {
    for (const auto& id : changes.added) {
        finder_.forget(id);
    }
    for (const auto& [before, now] : changes.changed) {
        finder_.forget(now.id);
    }
}

void CardSearch::show() {
    list_.forEachRow([this](std::size_t position, juce::Component& row) {
        dynamic_cast<RuleView&>(row).showFound(foundOn(list_.items()[position]));
    });
    header_.searchField().showFinds(isOn() ? juce::String(finder_.count(list_.items())) + " found"
                                           : juce::String());
}

}  // namespace quillo
