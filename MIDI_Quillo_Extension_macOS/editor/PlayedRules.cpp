// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/PlayedRules.hpp"

#include <algorithm>
#include <limits>

namespace quillo {

std::vector<std::size_t> playedRules(const std::vector<RuleHits>& hits) {
    auto newest = std::numeric_limits<double>::infinity();
    for (const auto& rule : hits) {
        newest = rule.count > 0 ? std::min(newest, rule.secondsAgo) : newest;
    }
    std::vector<std::size_t> played;
    for (std::size_t position = 0; position < hits.size(); ++position) {
        if (hits[position].count > 0 && hits[position].secondsAgo <= newest + playedWithin) {
            played.push_back(position);
        }
    }
    return played;
}

}  // namespace quillo
