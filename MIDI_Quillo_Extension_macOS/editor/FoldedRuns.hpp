// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <vector>

#include "editor/RuleListHistory.hpp"
#include "platform/UUID.hpp"
#include "rules/RuleRun.hpp"

namespace quillo {

/// Which rules of the list stand on one card: those of a run that is folded. Nothing of it is stored; the
/// rules are what they are.
///
/// A list under the user's hands never folds by itself: only the rules that were folded, or that came from
/// elsewhere as a long run, share a card, and only for as long as they go on with the rules above them. What
/// is gone from the list stays known: undoing brings it back as it was. [main] only.
///
///     folded.arrive(imported);
///     folded.follow(before, imported);
///     for (const auto& card : folded.cards()) { ... imported[card.first] ... }
class FoldedRuns {
public:
    /// Runs of so many rules are folded as they come from elsewhere.
    static constexpr std::size_t leastThatArrives = 3;

    /// The runs of these rules that are long enough are folded once they are in the list.
    void arrive(const RuleList& rules);
    /// `after` is the list from now on; `before` is the one that was followed last, empty at first.
    void follow(const RuleList& before, const RuleList& after);
    /// Nothing is folded, and the list is empty, from now on.
    void forget();

    /// Whether a rule is to share the card of the rule above it. `join` takes effect with the list that is
    /// followed next.
    [[nodiscard]] bool isJoined(const UUID& id) const { return joined_.contains(id); }
    void join(const UUID& id) { joined_.insert(id); }

    /// Folds the run that a rule is in; nothing happens for a rule by itself.
    void fold(const UUID& id);
    /// Each rule of the card gets a card of its own.
    void unfold(const UUID& id);

    /// The cards of the list, from its first rule to its last: single rules and folded runs.
    [[nodiscard]] const std::vector<RuleRun>& cards() const { return cards_; }
    /// The card that a rule stands on, and the run that it is in; nothing for a rule that is not in the list.
    [[nodiscard]] std::optional<RuleRun> cardOf(const UUID& id) const;
    [[nodiscard]] std::optional<RuleRun> runOf(const UUID& id) const;

private:
    /// A rule of the list.
    struct Place {
        UUID id;
        RunLink link;        ///< how it goes on with the rule above it
        bool joins = false;  ///< whether it is to share that rule's card
    };

    [[nodiscard]] std::optional<std::size_t> positionOf(const UUID& id) const;
    void letJoin(const RuleRun& run, bool joins);
    void makeCards();

    std::vector<Place> places_;
    std::set<UUID> joined_;
    std::vector<RuleRun> cards_;
};

}  // namespace quillo
