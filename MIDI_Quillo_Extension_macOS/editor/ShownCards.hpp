// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "editor/RuleListEditor.hpp"
#include "session/RuleHits.hpp"

namespace quillo {

/// A card as it is shown: its first rule, and how many more.
struct ShownCard {
    UUID id;  ///< of the first rule
    RuleEntry rule;
    std::size_t count = 1;
    bool rises = false;
    bool off = false;

    bool operator==(const ShownCard&) const = default;
};

/// The cards of a list as they are shown, in order. A card stays the same one as long as its first rule
/// stays. [main] only.
class ShownCards {
public:
    /// What has become of the cards.
    struct Changes {
        std::vector<UUID> added;
        std::vector<std::pair<ShownCard, ShownCard>> changed;  ///< as they were, and as they are
    };

    /// Shows the cards of the editor's list as they are now.
    Changes follow(const RuleListEditor& editor);

    [[nodiscard]] const std::vector<ShownCard>& all() const { return cards_; }
    /// The card that begins with this rule, and its position; null and nothing without such a card.
    [[nodiscard]] const ShownCard* find(const UUID& id) const;
    [[nodiscard]] std::optional<std::size_t> position(const UUID& id) const;
    /// How many rules it has; its `first` says nothing. One rule without such a card.
    [[nodiscard]] RuleRun run(const UUID& id) const;

private:
    std::vector<ShownCard> cards_;
    std::map<UUID, std::size_t> positions_;
};

/// The hits of all rules of a card, and when one of them fired last; nothing where nobody counts. `hits` are
/// those of the whole list.
[[nodiscard]] std::optional<RuleHits> hitsOf(const RuleRun& card, const std::vector<RuleHits>& hits);

}  // namespace quillo
