// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ShownCards.hpp"

#include <span>

namespace quillo {

ShownCards::Changes ShownCards::follow(const RuleListEditor& editor) {
    const auto before = std::exchange(cards_, {});
    const auto positionsBefore = std::exchange(positions_, {});
    Changes changes;
    for (const auto& run : editor.cards()) {
        const auto& first = editor.rules()[run.first];
        const ShownCard card{first.id, first.rule, run.count, run.rises, first.off};
        const auto was = positionsBefore.find(card.id);
        if (was == positionsBefore.end()) {
            changes.added.push_back(card.id);
        } else if (!(before[was->second] == card)) {
            changes.changed.emplace_back(before[was->second], card);
        }
        positions_.emplace(card.id, cards_.size());
        cards_.push_back(card);
    }
    return changes;
}

std::optional<std::size_t> ShownCards::position(const UUID& id) const {
    const auto found = positions_.find(id);
    return found != positions_.end() ? std::optional(found->second) : std::nullopt;
}

const ShownCard* ShownCards::find(const UUID& id) const {
    const auto at = position(id);
    return at ? &cards_[*at] : nullptr;
}

RuleRun ShownCards::run(const UUID& id) const {
    const auto* card = find(id);
    return card != nullptr ? RuleRun{0, card->count, card->rises} : RuleRun();
}

std::optional<RuleHits> hitsOf(const RuleRun& card, const std::vector<RuleHits>& hits) {
    if (card.first + card.count > hits.size()) {
        return std::nullopt;
    }
    RuleHits sum;
    for (const auto& rule : std::span(hits).subspan(card.first, card.count)) {
        const bool isNewest = rule.count > 0 && (sum.count == 0 || rule.secondsAgo < sum.secondsAgo);
        sum.secondsAgo = isNewest ? rule.secondsAgo : sum.secondsAgo;
        sum.count += rule.count;
    }
    return sum;
}

}  // namespace quillo
