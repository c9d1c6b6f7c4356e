// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FoldedRuns.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quillo {

namespace {

/// A message that was loaded and that no entry holds can be in no run, and the rules of a run are all on or
/// all off.
RunLink linkAt(const RuleList& list, std::size_t position) {
    if (position == 0) {
        return RunLink::none;
    }
    const auto& above = list[position - 1];
    const auto& below = list[position];
    const bool canLink = !above.loadedMessage && !below.loadedMessage && above.off == below.off;
    return canLink ? linkBetween(above.rule, below.rule) : RunLink::none;
}

/// The runs of so many rules, each as long as it can be. A rule stands by itself where `linkOf` says that it
/// does not go on with the one above it.
template <class LinkOf>
std::vector<RuleRun> grouped(std::size_t count, LinkOf linkOf) {
    std::vector<RuleRun> runs;
    for (std::size_t position = 0; position < count; ++position) {
        const RunLink link = linkOf(position);
        const bool rises = link == RunLink::rising;
        if (link != RunLink::none && (runs.back().count == 1 || runs.back().rises == rises)) {
            ++runs.back().count;
            runs.back().rises = rises;
        } else {
            runs.push_back({position, 1, false});
        }
    }
    return runs;
}

std::optional<RuleRun> runAt(const std::vector<RuleRun>& runs, std::optional<std::size_t> position) {
    if (!position) {
        return std::nullopt;
    }
    return *std::prev(std::ranges::upper_bound(runs, *position, {}, &RuleRun::first));
}

}  // namespace

void FoldedRuns::arrive(const RuleList& rules) {
    const auto runs =
        grouped(rules.size(), [&rules](std::size_t position) { return linkAt(rules, position); });
    for (const auto& run : runs) {
        for (auto rule = 1 + run.first; run.count >= leastThatArrives && rule < run.first + run.count;
             ++rule) {
            join(rules[rule].id);
        }
    }
}

/// What is known of a rule is worked out again only where the two lists differ.
void FoldedRuns::follow(const RuleList& before, const RuleList& after) {
    const auto prefix = std::ranges::mismatch(before, after).in2 - after.begin();
    const auto shorter = std::min(std::ssize(before), std::ssize(after)) - prefix;
    std::ptrdiff_t suffix = 0;
    while (suffix < shorter && *std::prev(before.end(), suffix + 1) == *std::prev(after.end(), suffix + 1)) {
        ++suffix;
    }
    std::vector<Place> changed;
    const auto end = std::ssize(after) - suffix;
    for (auto position = static_cast<std::size_t>(prefix); std::cmp_less(position, end); ++position) {
        const auto& id = after[position].id;
        changed.push_back({id, linkAt(after, position), isJoined(id)});
    }
    const auto rest = places_.erase(places_.begin() + prefix, places_.end() - suffix);
    places_.insert(rest, changed.begin(), changed.end());
    if (end < std::ssize(after)) {
        places_[static_cast<std::size_t>(end)].link = linkAt(after, static_cast<std::size_t>(end));
    }
    makeCards();
}

void FoldedRuns::forget() {
    joined_.clear();
    places_.clear();
    cards_.clear();
}

/// A rule that has a card of its own keeps it, whatever it goes on with later.
void FoldedRuns::makeCards() {
    cards_ = grouped(places_.size(), [this](std::size_t position) {
        return places_[position].joins ? places_[position].link : RunLink::none;
    });
    for (const auto& card : cards_) {
        if (std::exchange(places_[card.first].joins, false)) {
            joined_.erase(places_[card.first].id);
        }
    }
}

void FoldedRuns::letJoin(const RuleRun& run, bool joins) {
    for (auto rule = run.first + 1; rule < run.first + run.count; ++rule) {
        places_[rule].joins = joins;
        joins ? void(joined_.insert(places_[rule].id)) : void(joined_.erase(places_[rule].id));
    }
    makeCards();
}

void FoldedRuns::fold(const UUID& id) {
    if (const auto run = runOf(id)) {
        letJoin(*run, true);
    }
}

void FoldedRuns::unfold(const UUID& id) {
    if (const auto card = cardOf(id)) {
        letJoin(*card, false);
    }
}

std::optional<std::size_t> FoldedRuns::positionOf(const UUID& id) const {
    const auto found = std::ranges::find(places_, id, &Place::id);
    return found == places_.end() ? std::nullopt
                                  : std::optional(static_cast<std::size_t>(found - places_.begin()));
}

std::optional<RuleRun> FoldedRuns::cardOf(const UUID& id) const {
    return runAt(cards_, positionOf(id));
}

std::optional<RuleRun> FoldedRuns::runOf(const UUID& id) const {
    const auto runs =
        grouped(places_.size(), [this](std::size_t position) { return places_[position].link; });
    return runAt(runs, positionOf(id));
}

}  // namespace quillo
