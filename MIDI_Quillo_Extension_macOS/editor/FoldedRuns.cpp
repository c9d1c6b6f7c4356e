// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FoldedRuns.hpp"

#include <algorithm>
#include <iterator>

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

std::vector<RunLink> linksOf(const RuleList& list) {
    std::vector<RunLink> links;
    for (std::size_t position = 0; position < list.size(); ++position) {
        links.push_back(linkAt(list, position));
    }
    return links;
}

/// The runs that the links make, each as long as it can be; a rule stands by itself where it does not go on.
template <class GoesOn>
std::vector<RuleRun> grouped(const std::vector<RunLink>& links, GoesOn goesOn) {
    std::vector<RuleRun> runs;
    for (std::size_t position = 0; position < links.size(); ++position) {
        const auto link = links[position];
        const bool rises = link == RunLink::rising;
        if (link != RunLink::none && goesOn(position) &&
            (runs.back().count == 1 || runs.back().rises == rises)) {
            ++runs.back().count;
            runs.back().rises = rises;
        } else {
            runs.push_back({position, 1, false});
        }
    }
    return runs;
}

std::vector<RuleRun> allRuns(const std::vector<RunLink>& links) {
    return grouped(links, [](std::size_t) { return true; });
}

std::optional<RuleRun> runAt(const std::vector<RuleRun>& runs, std::optional<std::size_t> position) {
    if (!position) {
        return std::nullopt;
    }
    return *std::prev(std::ranges::upper_bound(runs, *position, {}, &RuleRun::first));
}

}  // namespace

void FoldedRuns::arrive(const RuleList& rules) {
    for (const auto& run : allRuns(linksOf(rules))) {
        for (auto rule = 1 + run.first; run.count >= leastThatArrives && rule < run.first + run.count;
             ++rule) {
            join(rules[rule].id);
        }
    }
}

/// Links are worked out only where the two lists differ.
void FoldedRuns::follow(const RuleList& before, const RuleList& after) {
    const auto prefix = std::ranges::mismatch(before, after).in2 - after.begin();
    const auto shorter = std::min(std::ssize(before), std::ssize(after)) - prefix;
    std::ptrdiff_t suffix = 0;
    while (suffix < shorter && *std::prev(before.end(), suffix + 1) == *std::prev(after.end(), suffix + 1)) {
        ++suffix;
    }
    links_.erase(links_.begin() + prefix, links_.end() - suffix);
    links_.insert(links_.begin() + prefix, static_cast<std::size_t>(std::ssize(after) - prefix - suffix), {});
    const auto end = std::min(after.size(), after.size() - static_cast<std::size_t>(suffix) + 1);
    for (auto position = static_cast<std::size_t>(prefix); position < end; ++position) {
        links_[position] = linkAt(after, position);
    }
    ids_.clear();
    std::ranges::transform(after, std::back_inserter(ids_), &RuleEntryIdentifiable::id);
    makeCards();
}

void FoldedRuns::forget() {
    joined_.clear();
    makeCards();
}

/// A rule that has a card of its own keeps it, whatever it goes on with later.
void FoldedRuns::makeCards() {
    cards_ = grouped(links_, [this](std::size_t position) { return isJoined(ids_[position]); });
    for (const auto& card : cards_) {
        joined_.erase(ids_[card.first]);
    }
}

void FoldedRuns::fold(const UUID& id) {
    if (const auto run = runOf(id)) {
        for (auto rule = run->first + 1; rule < run->first + run->count; ++rule) {
            join(ids_[rule]);
        }
        makeCards();
    }
}

void FoldedRuns::unfold(const UUID& id) {
    if (const auto card = cardOf(id)) {
        for (auto rule = card->first; rule < card->first + card->count; ++rule) {
            joined_.erase(ids_[rule]);
        }
        makeCards();
    }
}

std::optional<std::size_t> FoldedRuns::positionOf(const UUID& id) const {
    const auto found = std::ranges::find(ids_, id);
    return found == ids_.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - ids_.begin()));
}

std::optional<RuleRun> FoldedRuns::cardOf(const UUID& id) const {
    return runAt(cards_, positionOf(id));
}

std::optional<RuleRun> FoldedRuns::runOf(const UUID& id) const {
    return runAt(allRuns(links_), positionOf(id));
}

}  // namespace quillo
