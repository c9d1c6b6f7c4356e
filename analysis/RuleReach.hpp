// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "analysis/EventBox.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// What becomes of every event that can come: which rules fire, which one consumes it, and which rules keep
/// others from firing. Worked out by sets, for all events at once; exact.
class RuleReach {
public:
    /// The rules must outlive it.
    explicit RuleReach(const std::vector<Rule>& rules);

    /// The events that a rule waits for.
    [[nodiscard]] const EventBox& box(std::size_t rule) const { return boxes_[rule]; }

    /// Whether an event that the rule waits for comes as far as to the rule.
    [[nodiscard]] bool fires(std::size_t rule, const Event& event) const {
        return consumers_[EventBox::numberOf(event)] >= rule;
    }

    /// An event that fires the rule; nothing for an on-load rule, and where no event does.
    [[nodiscard]] const std::optional<Event>& example(std::size_t rule) const { return examples_[rule]; }

    [[nodiscard]] bool canFire(std::size_t rule) const;

    /// The rule that consumes an event; nothing when a message is forwarded.
    [[nodiscard]] std::optional<std::size_t> consumer(const Event& event) const;

    /// Whether the rule consumes any event at all.
    [[nodiscard]] bool consumesAny(std::size_t rule) const { return consumesAny_[rule]; }

    /// Of a rule that cannot fire: the rules that consume, between them, every event that it waits for, in
    /// ascending order. None when there is no such event. Above the first of them the rule can fire.
    [[nodiscard]] const std::vector<std::size_t>& blockers(std::size_t rule) const;

    /// Of a rule that cannot fire, but has blockers: rules that let it fire once they are set to Pass
    /// through, the first blocker among them; in ascending order, no more than `most` of them.
    [[nodiscard]] std::vector<std::size_t> inTheWay(std::size_t rule, std::size_t most) const;

    /// Whether a rule that cannot fire could be moved above its first blocker, and every rule that can fire
    /// still could.
    [[nodiscard]] bool canMove(std::size_t rule) const;

private:
    using Consumer = std::uint32_t;
    static constexpr auto nobody = std::numeric_limits<Consumer>::max();

    [[nodiscard]] bool consumes(std::size_t rule, const Event& event) const;
    [[nodiscard]] std::optional<Event> firstThatFires(std::size_t rule) const;
    [[nodiscard]] std::vector<std::size_t> findBlockers(std::size_t rule) const;
    void consume(std::size_t rule, std::size_t number);
    void consumeMatching(std::size_t rule);
    void consumeOthers(std::size_t rule);

    const std::vector<Rule>& rules_;
    std::vector<EventBox> boxes_;
    std::vector<Consumer> consumers_ = std::vector<Consumer>(EventBox::eventCount, nobody);
    std::vector<std::optional<Event>> examples_;
    std::vector<bool> consumesAny_;
    std::set<EventBox> gates_;  ///< nothing but what one lets pass comes to a second one like it
    /// By what rules that cannot fire wait for: their blockers. All of it is consumed.
    std::map<EventBox, std::vector<std::size_t>> dead_;
    std::optional<std::vector<std::size_t>>
        left_;  ///< behind a gate: the numbers of the events that passed it
};

}  // namespace quillo
