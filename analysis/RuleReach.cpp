// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/RuleReach.hpp"

#include <algorithm>
#include <numeric>

#include "words/PolicyWords.hpp"

namespace quillo {

RuleReach::RuleReach(const std::vector<Rule>& rules) : rules_(rules), consumesAny_(rules.size()) {
    for (std::size_t rule = 0; rule < rules.size(); ++rule) {
        const auto& box = boxes_.emplace_back(rules[rule].trigger);
        const bool isDead = dead_.contains(box);
        const auto policy = policyOf(rules[rule].trigger);
        if (policy == PassThroughV2::EatMatching && !isDead) {
            consumeMatching(rule);
        } else if (policy == PassThroughV2::EatNonMatching && gates_.insert(box).second) {
            consumeOthers(rule);
        }
        examples_.push_back(isDead ? std::nullopt : firstThatFires(rule));
        if (!isDead && !canFire(rule)) {
            dead_.emplace(box, findBlockers(rule));
        }
    }
}

void RuleReach::consume(std::size_t rule, std::size_t number) {
    if (consumers_[number] == nobody) {
        consumers_[number] = static_cast<Consumer>(rule);
        consumesAny_[rule] = true;
    }
}

void RuleReach::consumeMatching(std::size_t rule) {
    boxes_[rule].any([&](const Event& event) {
        consume(rule, EventBox::numberOf(event));
        return false;
    });
}

/// A gate. No more pass the first one than a box holds, so that those behind it have little to do.
void RuleReach::consumeOthers(std::size_t rule) {
    if (!left_) {
        left_.emplace(EventBox::eventCount);
        std::iota(left_->begin(), left_->end(), std::size_t{0});
    }
    std::erase_if(*left_, [&](std::size_t number) {
        const bool passes = consumers_[number] == nobody && boxes_[rule].contains(EventBox::eventAt(number));
        if (!passes) {
            consume(rule, number);
        }
        return !passes;
    });
}

std::optional<Event> RuleReach::firstThatFires(std::size_t rule) const {
    std::optional<Event> found;
    boxes_[rule].any([&](const Event& event) {
        if (fires(rule, event)) {
            found = event;
        }
        return found.has_value();
    });
    return found;
}

bool RuleReach::canFire(std::size_t rule) const {
    return rules_[rule].trigger.is<RuleTriggerV2::OnLoad>() || examples_[rule].has_value();
}

std::optional<std::size_t> RuleReach::consumer(const Event& event) const {
    const auto consumer = consumers_[EventBox::numberOf(event)];
    return consumer == nobody ? std::nullopt : std::optional<std::size_t>(consumer);
}

const std::vector<std::size_t>& RuleReach::blockers(std::size_t rule) const {
    return dead_.at(boxes_[rule]);
}

std::vector<std::size_t> RuleReach::findBlockers(std::size_t rule) const {
    std::vector<std::size_t> blockers;
    boxes_[rule].any([&](const Event& event) {
        const std::size_t consumer = consumers_[EventBox::numberOf(event)];
        if (blockers.empty() || blockers.back() != consumer) {
            blockers.push_back(consumer);
        }
        return false;
    });
    std::ranges::sort(blockers);
    const auto surplus = std::ranges::unique(blockers);
    blockers.erase(surplus.begin(), surplus.end());
    return blockers;
}

std::vector<std::size_t> RuleReach::inTheWay(std::size_t rule, std::size_t most) const {
    const auto first = blockers(rule).front();
    std::vector<std::size_t> inTheWay;
    boxes_[rule].any([&](const Event& event) {
        if (consumer(event) != first) {
            return false;
        }
        for (std::size_t above = first; above < rule && inTheWay.size() < most; ++above) {
            if (consumes(above, event)) {
                inTheWay.push_back(above);
            }
        }
        return true;
    });
    return inTheWay;
}

/// Nothing that the rule waits for comes further than to it: only rules above it can miss what it would take.
bool RuleReach::canMove(std::size_t rule) const {
    for (auto above = blockers(rule).front(); above < rule; ++above) {
        const bool stillFires = !canFire(above) || boxes_[above].any([&](const Event& event) {
            return fires(above, event) && !consumes(rule, event);
        });
        if (!stillFires && !rules_[above].trigger.is<RuleTriggerV2::OnLoad>()) {
            return false;
        }
    }
    return true;
}

bool RuleReach::consumes(std::size_t rule, const Event& event) const {
    return policyOf(rules_[rule].trigger) ==
           (boxes_[rule].contains(event) ? PassThroughV2::EatMatching : PassThroughV2::EatNonMatching);
}

}  // namespace quillo
