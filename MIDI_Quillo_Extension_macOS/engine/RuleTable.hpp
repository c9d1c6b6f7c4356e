// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "engine/Generator.hpp"
#include "engine/MIDIRuleInternal.hpp"
#include "engine/TriggerPattern.hpp"
#include "platform/RealTime.hpp"
#include "rules/RuleTriggerV2.hpp"

namespace quillo {

/// A rule's position in the chain.
using RuleOrdinal = std::uint32_t;

/// Comes after every rule.
inline constexpr RuleOrdinal noRule = std::numeric_limits<RuleOrdinal>::max();

/// What becomes of every event, worked out when rules are installed: which rules fire, in which order, and
/// which one consumes it. An event looks it up, whatever the number of rules.
///
/// Each status byte has a row of 256 cells, one for each first data byte. A cell is an outcome; or, for a
/// controller with rules for single values, a further row, of one outcome for each second data byte. Status
/// bytes that the same rules wait for share their row. The rules that any byte fires are listed once in a
/// row, however many bytes have rules of their own: those come in between as runs. So the table grows with
/// the rules; its rows take at most 4.3 MB, when each controller of each channel has a rule for a single
/// value.
class RuleTable {
public:
    /// Rules that fire one after the other; an outcome is one run or several that lie side by side.
    struct Run {
        std::uint32_t begin = 0;        ///< of the rules among `ordinals`
        std::uint32_t end = 0;          ///< the same, exclusive
        RuleOrdinal consumer = noRule;  ///< the rule that consumes the event, `noRule` when none does
        bool isLast = true;             ///< of the outcome
    };

    /// [any but render]
    explicit RuleTable(std::span<const MIDIRuleInternal> rules);

    /// The first run of an event's outcome.
    [[nodiscard]] const Run& outcome(const TriggerBytes& message) const QUILLO_REALTIME {
        auto cell = cells_[rows_[message.status] + message.data1];
        if ((cell & leadsToRow) != 0) {
            cell = cells_[(cell & ~leadsToRow) + message.data2];
        }
        return runs_[cell];
    }
    [[nodiscard]] const Run& outcome(HostTransportTriggerVariantsV2 trigger) const QUILLO_REALTIME {
        return runs_[hostOutcomes_[static_cast<std::size_t>(trigger)]];
    }

    /// How much memory it takes.
    [[nodiscard]] std::size_t bytes() const;

    /// What runs are made of.
    [[nodiscard]] const RuleOrdinal* ordinals() const QUILLO_REALTIME { return ordinals_.data(); }

private:
    friend class RuleTableBuilder;

    /// An index of a run, or that of a row's first cell and `leadsToRow`.
    using Cell = std::uint32_t;
    static constexpr Cell leadsToRow = 0x8000'0000U;
    static constexpr std::size_t rowLength = 256;

    std::array<Cell, rowLength> rows_{};  ///< of each status byte, its row's first cell
    std::array<Cell, 3> hostOutcomes_{};  ///< of each change of the host's transport
    std::vector<Cell> cells_;
    std::vector<Run> runs_;
    std::vector<RuleOrdinal> ordinals_;
};

}  // namespace quillo
