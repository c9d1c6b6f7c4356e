// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/HitHistory.hpp"

#include <algorithm>
#include <list>
#include <utility>

namespace quillo {

namespace {

/// Old rules that no new one has been found for, in order.
using Left = std::list<std::size_t>;

bool areEqual(const Rule& one, const Rule& other) {
    return one == other;
}

bool differInNameAtMost(const Rule& one, const Rule& other) {
    return one.trigger == other.trigger && one.output == other.output;
}

/// The first of those left that is the same, the last of all before others: what was moved stands at one of
/// the two ends. Only some of very many are looked at.
template <class Predicate>
Left::iterator find(Left& left, const ListedRules& before, const Rule& rule, const Predicate& areSame) {
    constexpr int mostLooks = 256;
    if (!left.empty() && areSame(*before[left.back()], rule)) {
        return std::prev(left.end());
    }
    int looks = 0;
    const auto found = std::find_if(left.begin(), left.end(), [&](std::size_t place) {
        return ++looks > mostLooks || areSame(*before[place], rule);
    });
    return looks > mostLooks ? left.end() : found;
}

double secondsBetween(SampleTime from, HitHistory::Moment to) {
    return std::max(0.0, static_cast<double>(to.time - from) / static_cast<double>(to.sampleRate));
}

ListedRules listed(std::span<const Rule> rules, const RuleShelf& shelf) {
    ListedRules all;
    visitInOrder(rules, shelf, [&all](const Rule& rule, bool /*isOff*/) { all.push_back(&rule); });
    return all;
}

RuleHits sum(const RuleHits& before, double secondsSince, FiringCounts::Count count, HitHistory::Moment now) {
    if (before.count + count.times == 0) {
        return {};
    }
    const auto ago = count.times > 0 ? secondsBetween(count.last, now) : before.secondsAgo + secondsSince;
    return {before.count + count.times, ago};
}

}  // namespace

std::vector<std::size_t> placesBefore(const ListedRules& before, const ListedRules& after) {
    std::vector<std::size_t> places(after.size(), noPlace);
    const auto shorter = std::min(before.size(), after.size());
    std::size_t head = 0;
    for (; head < shorter && *before[head] == *after[head]; ++head) {
        places[head] = head;
    }
    std::size_t tail = 0;
    for (; tail < shorter - head && *before[before.size() - 1 - tail] == *after[after.size() - 1 - tail];
         ++tail) {
        places[after.size() - 1 - tail] = before.size() - 1 - tail;
    }
    Left left;
    for (auto place = head; place < before.size() - tail; ++place) {
        left.push_back(place);
    }
    const auto findAll = [&](const auto& areSame) {
        for (auto place = head; place < after.size() - tail; ++place) {
            if (places[place] != noPlace) {
                continue;
            }
            if (const auto found = find(left, before, *after[place], areSame); found != left.end()) {
                places[place] = *found;
                left.erase(found);
            }
        }
    };
    findAll(areEqual);
    findAll(differInNameAtMost);
    return places;
}

void HitHistory::follow(const CompiledRules& before, const RuleShelf& shelfBefore, const PluginData& after,
                        Moment now) {
    const auto places = placesBefore(listed(before.rules, shelfBefore), listed(after.rules, after.shelf));
    const auto hitsBefore = allHits(before, shelfBefore, now);
    auto place = places.begin();
    forget();
    visitInOrder(after.rules, after.shelf, [&](const Rule& /*rule*/, bool isOff) {
        (isOff ? off_ : before_).push_back(*place != noPlace ? hitsBefore[*place] : RuleHits());
        ++place;
    });
    since_ = now;
}

void HitHistory::forget() {
    before_.clear();
    off_.clear();
}

/// In the list's order.
std::vector<RuleHits> HitHistory::allHits(const CompiledRules& running, const RuleShelf& shelf,
                                          Moment now) const {
    const auto secondsSince = secondsBetween(since_.time, now);
    const auto hitsOfRunning = hits(running, now);
    auto next = hitsOfRunning.begin();
    std::size_t shelved = 0;
    std::vector<RuleHits> all;
    visitInOrder(running.rules, shelf, [&](const Rule& /*rule*/, bool isOff) {
        all.push_back(isOff ? sum(shelved < off_.size() ? off_[shelved] : RuleHits(), secondsSince, {}, now)
                            : *next++);
        shelved += isOff ? 1 : 0;
    });
    return all;
}

std::vector<RuleHits> HitHistory::hits(const CompiledRules& running, Moment now) const {
    const auto secondsSince = secondsBetween(since_.time, now);
    std::vector<RuleHits> hits;
    hits.reserve(running.rules.size());
    for (std::size_t place = 0; place < running.rules.size(); ++place) {
        const auto before = place < before_.size() ? before_[place] : RuleHits();
        hits.push_back(sum(before, secondsSince, running.counts[place], now));
    }
    return hits;
}

}  // namespace quillo
