// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "analysis/NoteLedger.hpp"
#include "analysis/RuleAdvice.hpp"
#include "analysis/TellingEvents.hpp"
#include "engine/MIDIMessage.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// Finds rules that never send complete messages only. Watches the trials of all telling events.
class OutputCheck {
public:
    explicit OutputCheck(std::size_t ruleCount) : findings_(ruleCount) {}

    void watch(const Trial& trial);

    /// Something incomplete that the rule sent, if it sends such whenever it fires.
    [[nodiscard]] std::optional<MIDIMessage> incomplete(std::size_t rule) const;

private:
    struct Finding {
        std::optional<MIDIMessage> incomplete;
        bool completeOnce = false;
    };

    std::vector<Finding> findings_;
};

/// On a note that the rule starts and leaves, and on one whose end it swallows.
[[nodiscard]] std::vector<Advice> adviseOnNotes(std::size_t rule, const NoteLedger& notes);

/// On system-exclusive bytes and how many they are, and on messages that are not complete.
[[nodiscard]] std::vector<Advice> adviseOnOutput(const RuleOutputV2& output, std::size_t rule,
                                                 const OutputCheck& outputs);

}  // namespace quillo
