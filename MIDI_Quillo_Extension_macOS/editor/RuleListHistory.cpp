// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleListHistory.hpp"

#include <algorithm>
#include <iterator>
#include <ranges>
#include <utility>

namespace quillo {

namespace {

using Offset = RuleList::difference_type;

}  // namespace

void RuleListHistory::note(std::string name, const RuleList& before, const RuleList& after,
                           std::string joinKey) {
    auto change = difference(before, after);
    if (change.removed.empty() && change.inserted.empty()) {
        return;
    }
    const bool joins =
        undone_.empty() && !joinKey.empty() && !done_.empty() && done_.back().joinKey == joinKey;
    undone_.clear();
    if (joins) {
        // The same element again: the step goes from its first value to its last.
        auto& last = done_.back().changes.back();
        if (last.position != change.position || last.inserted != change.removed) {
            done_.back().changes.push_back(std::move(change));
        } else if (last.removed != change.inserted) {
            last.inserted = std::move(change.inserted);
        } else {
            takeBackLast();
        }
        return;
    }
    push({std::move(name), std::move(joinKey), {std::move(change)}});
}

/// The last change of the last step.
void RuleListHistory::takeBackLast() {
    done_.back().changes.pop_back();
    if (done_.back().changes.empty()) {
        done_.pop_back();
    }
}

void RuleListHistory::noteReplacement(std::string name, const RuleList& before, const RuleList& after) {
    undone_.clear();
    push({std::move(name), "", {{0, before, after}}, true});
}

void RuleListHistory::push(Step step) {
    done_.push_back(std::move(step));
    if (done_.size() > capacity_) {
        done_.pop_front();
        whole_ = false;
    }
}

void RuleListHistory::endStep() {
    if (!done_.empty()) {
        done_.back().joinKey.clear();
    }
}

std::optional<std::string> RuleListHistory::undoName() const {
    return done_.empty() ? std::nullopt : std::optional(done_.back().name);
}

std::optional<std::string> RuleListHistory::redoName() const {
    return undone_.empty() ? std::nullopt : std::optional(undone_.back().name);
}

RuleList RuleListHistory::undo(RuleList list) {
    if (done_.empty()) {
        return list;
    }
    auto step = std::move(done_.back());
    done_.pop_back();
    for (const auto& change : std::views::reverse(step.changes)) {
        replace(list, change.position, change.inserted, change.removed);
    }
    step.joinKey.clear();
    hasWalkedReplacement_ = step.isReplacement;
    undone_.push_back(std::move(step));
    return list;
}

RuleList RuleListHistory::redo(RuleList list) {
    if (undone_.empty()) {
        return list;
    }
    auto step = std::move(undone_.back());
    undone_.pop_back();
    for (const auto& change : step.changes) {
        replace(list, change.position, change.removed, change.inserted);
    }
    hasWalkedReplacement_ = step.isReplacement;
    done_.push_back(std::move(step));
    return list;
}

void RuleListHistory::clear() {
    done_.clear();
    undone_.clear();
    whole_ = true;
}

RuleListHistory::Change RuleListHistory::difference(const RuleList& before, const RuleList& after) {
    const auto [firstBefore, firstAfter] = std::ranges::mismatch(before, after);
    const auto position = std::distance(before.begin(), firstBefore);
    const auto shorter = static_cast<Offset>(std::min(before.size(), after.size()));
    Offset common = 0;
    while (common < shorter - position && before[before.size() - 1 - static_cast<std::size_t>(common)] ==
                                              after[after.size() - 1 - static_cast<std::size_t>(common)]) {
        ++common;
    }
    return {static_cast<std::size_t>(position), RuleList(firstBefore, before.end() - common),
            RuleList(firstAfter, after.end() - common)};
}

void RuleListHistory::replace(RuleList& list, std::size_t position, const RuleList& out, const RuleList& in) {
    const auto at = list.begin() + static_cast<Offset>(position);
    const auto rest = list.erase(at, at + static_cast<Offset>(out.size()));
    list.insert(rest, in.begin(), in.end());
}

}  // namespace quillo
