// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <vector>

#include "analysis/AskedEvent.hpp"
#include "analysis/EngineProbe.hpp"
#include "analysis/TellingEvents.hpp"

namespace quillo {

/// Which rules can fire at all, and which rules keep the others from it. Watches the trials of all telling
/// events; after them what it says is exact.
class RuleReach {
public:
    explicit RuleReach(const EngineProbe& probe) : probe_(probe), fires_(probe.rules().size()) {}

    void watch(const Trial& trial);

    [[nodiscard]] bool canFire(std::size_t rule) const { return fires_[rule]; }

    /// Of a rule that cannot fire: the rules that consume, between them, every event that it waits for. None
    /// when there is no such event. Above the first of them the rule can fire.
    [[nodiscard]] std::set<std::size_t> blockers(std::size_t rule) const;

    /// Of a rule that cannot fire, but has blockers: rules that let it fire once they are set to Pass through, the
    /// first blocker among them.
    [[nodiscard]] std::set<std::size_t> inTheWay(std::size_t rule) const;

    /// Whether a rule could be moved to a place further up and every rule that can fire still could.
    [[nodiscard]] bool canMove(std::size_t rule, std::size_t place) const;

private:
    struct Consumption {
        AskedEvent event;
        std::size_t consumer;
    };

    [[nodiscard]] bool waitsFor(std::size_t rule, const AskedEvent& event) const;
    [[nodiscard]] bool consumes(std::size_t rule, const AskedEvent& event) const;

    const EngineProbe& probe_;
    std::vector<bool> fires_;
    std::vector<Consumption> consumptions_;
};

}  // namespace quillo
