// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "editor/RuleSearch.hpp"
#include "platform/UUID.hpp"

namespace quillo {

/// What is looked for among the cards of a list, and the find that is looked at. The texts of a card are
/// asked for once, and again after they have changed. [main] only.
class CardFinder {
public:
    explicit CardFinder(std::function<std::vector<SearchedText>(const UUID&)> textsOf);

    /// From now on this is looked for; no find is looked at.
    void look(const juce::String& typed);
    [[nodiscard]] bool isLooking() const { return !search_.isEmpty(); }
    /// Nothing is looked for any more.
    void end();

    /// The next find among these cards, behind or before the one that is looked at, and around; it is looked
    /// at from now on. Nothing when nothing is found.
    std::optional<UUID> goOn(const std::vector<UUID>& cards, bool forward);
    [[nodiscard]] const std::optional<UUID>& current() const { return current_; }

    /// The positions of the texts in which it is found; nothing for a card without it.
    [[nodiscard]] std::optional<std::set<std::size_t>> find(const UUID& card);
    /// How many of these cards have it.
    [[nodiscard]] std::size_t count(const std::vector<UUID>& cards);

    /// The texts of a card have changed.
    void forget(const UUID& card) { texts_.erase(card); }

private:
    std::function<std::vector<SearchedText>(const UUID&)> textsOf_;
    RuleSearch search_;
    std::optional<UUID> current_;
    std::map<UUID, std::vector<SearchedText>> texts_;
};

}  // namespace quillo
