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
Left::iterator find(Left& left, std::span<const Rule> before, const Rule& rule, const Predicate& areSame) {
    constexpr int mostLooks = 256;
    if (!left.empty() && areSame(before[left.back()], rule)) {
        return std::prev(left.end());
    }
    int looks = 0;
    const auto found = std::find_if(left.begin(), left.end(), [&](std::size_t place) {
        return ++looks > mostLooks || areSame(before[place], rule);
    });
    return looks > mostLooks ? left.end() : found;
}

double secondsBetween(SampleTime from, HitHistory::Moment to) {
    return std::max(0.0, static_cast<double>(to.time - from) / static_cast<double>(to.sampleRate));
}

RuleHits sum(const RuleHits& before, double secondsSince, FiringCounts::Count count, HitHistory::Moment now) {
    if (before.count + count.times == 0) {
        return {};
    }
    const auto ago = count.times > 0 ? secondsBetween(count.last, now) : before.secondsAgo + secondsSince;
    return {before.count + count.times, ago};
}

}  // namespace

std::vector<std::size_t> placesBefore(std::span<const Rule> before, std::span<const Rule> after) {
    std::vector<std::size_t> places(after.size(), noPlace);
    const auto shorter = std::min(before.size(), after.size());
    std::size_t head = 0;
    for (; head < shorter && before[head] == after[head]; ++head) {
        places[head] = head;
    }
    std::size_t tail = 0;
    for (; tail < shorter - head && before[before.size() - 1 - tail] == after[after.size() - 1 - tail];
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
            if (const auto found = find(left, before, after[place], areSame); found != left.end()) {
                places[place] = *found;
                left.erase(found);
            }
        }
    };
    findAll(areEqual);
    findAll(differInNameAtMost);
    return places;
}

void HitHistory::follow(const CompiledRules& before, std::span<const Rule> after, Moment now) {
    const auto hitsBefore = hits(before, now);
    std::vector<RuleHits> kept;
    kept.reserve(after.size());
    for (const auto place : placesBefore(before.rules, after)) {
        kept.push_back(place != noPlace ? hitsBefore[place] : RuleHits());
    }
    before_ = std::move(kept);
    since_ = now;
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
