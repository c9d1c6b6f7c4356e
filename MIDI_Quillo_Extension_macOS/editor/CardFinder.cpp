// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/CardFinder.hpp"

#include <algorithm>
#include <utility>

namespace quillo {

CardFinder::CardFinder(std::function<std::vector<SearchedText>(const UUID&)> textsOf)
    : textsOf_(std::move(textsOf)) {}

void CardFinder::look(const juce::String& typed) {
    search_ = RuleSearch(typed);
    current_.reset();
}

void CardFinder::end() {
    look({});
    texts_.clear();
}

std::optional<UUID> CardFinder::goOn(const std::vector<UUID>& cards, bool forward) {
    const auto count = cards.size();
    const auto known = current_ ? std::ranges::find(cards, *current_) : cards.end();
    const auto nowhere = forward ? count - 1 : 0;
    const auto at = known != cards.end() ? static_cast<std::size_t>(known - cards.begin()) : nowhere;
    for (std::size_t step = 1; step <= count && isLooking(); ++step) {
        const auto& card = cards[(forward ? at + step : at + count - step) % count];
        if (find(card)) {
            current_ = card;
            return current_;
        }
    }
    return std::nullopt;
}

std::optional<std::set<std::size_t>> CardFinder::find(const UUID& card) {
    auto texts = texts_.find(card);
    if (texts == texts_.end()) {
        texts = texts_.emplace(card, textsOf_(card)).first;
    }
    return search_.find(texts->second);
}

std::size_t CardFinder::count(const std::vector<UUID>& cards) {
    return static_cast<std::size_t>(
        std::ranges::count_if(cards, [this](const UUID& card) { return find(card).has_value(); }));
}

}  // namespace quillo
