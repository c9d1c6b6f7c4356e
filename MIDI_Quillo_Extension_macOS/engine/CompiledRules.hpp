// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/MIDIRuleInternal.hpp"
#include "engine/RuleName.hpp"
#include "engine/RuleTable.hpp"
#include "engine/SampleTime.hpp"
#include "platform/RealTime.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// How often each rule of a list has fired, and when last. Made with the list and as long as it: one thread
/// counts, and any other may read meanwhile.
class FiringCounts {
public:
    struct Count {
        std::uint64_t times = 0;
        SampleTime last = 0;  ///< the event's sample time; only means something when `times` is not 0
    };

    /// [any but render] For so many rules, none of which has fired.
    explicit FiringCounts(std::size_t rules) : cells_(std::make_unique<Cell[]>(rules)) {}

    /// [render] The rule at this place of the list has fired. No locked instruction: only this thread counts.
    void count(std::size_t place, SampleTime at) const QUILLO_REALTIME {
        auto& cell = cells_[place];
        cell.last.store(at, std::memory_order_relaxed);
        cell.times.store(cell.times.load(std::memory_order_relaxed) + 1, std::memory_order_release);
    }

    /// [any] The time is that of the last firing counted, or of one since.
    [[nodiscard]] Count operator[](std::size_t place) const {
        const auto& cell = cells_[place];
        const auto times = cell.times.load(std::memory_order_acquire);
        return {times, cell.last.load(std::memory_order_relaxed)};
    }

private:
    struct Cell {
        std::atomic<std::uint64_t> times{0};
        std::atomic<SampleTime> last;  ///< without meaning before the first
    };

    std::unique_ptr<Cell[]> cells_;
};

/// A rule list and all that the render thread needs to run it. Immutable once made, but for what is counted,
/// so that it is installed by exchanging one pointer and read without copying.
struct CompiledRules {
    std::vector<Rule> rules;                          ///< the list as it was given
    std::vector<MIDIOnLoadRuleInternal> rulesOnLoad;  ///< the on-load rules, in order
    std::vector<MIDIRuleInternal> rulesInternal;      ///< all other rules, in order
    RuleTable table;                                  ///< what `rulesInternal` make of every event
    std::vector<RuleName> names;                      ///< of `rules`, as what they send carries them
    FiringCounts counts;                              ///< of `rules`
};

}  // namespace quillo
