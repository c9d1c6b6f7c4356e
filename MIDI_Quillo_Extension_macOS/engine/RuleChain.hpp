// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/CompiledRules.hpp"
#include "engine/Generator.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// One event's way through the rules: hands out the rules that fire, in order, until the list ends or a
/// rule's policy consumes the event.
///
/// The policy counts for every rule, of whichever kind: a host-transport rule that consumes what it does not
/// match consumes every incoming message, and the other way round.
///
///     RuleChain chain(rules, message);
///     while (const auto* rule = chain.next()) { fire(*rule); }
///     if (!chain.consumed()) { forward(message); }
class RuleChain {
public:
    RuleChain(const CompiledRules& rules, const TriggerBytes& message) QUILLO_REALTIME
        : RuleChain(rules, rules.table.outcome(message)) {}
    RuleChain(const CompiledRules& rules, HostTransportTriggerVariantsV2 trigger) QUILLO_REALTIME
        : RuleChain(rules, rules.table.outcome(trigger)) {}

    /// The next rule that the event fires, or null after the last.
    [[nodiscard]] const MIDIRuleInternal* next() QUILLO_REALTIME {
        while (next_ == run_->end) {
            if (run_->isLast) {
                return nullptr;
            }
            next_ = (++run_)->begin;
        }
        return &rules_.rulesInternal[rules_.table.ordinals()[next_++]];
    }

    /// Once `next` has returned null: the rule that consumed the event, `noRule` when none did. Rules behind
    /// it were not tried.
    [[nodiscard]] RuleOrdinal consumer() const QUILLO_REALTIME { return run_->consumer; }
    [[nodiscard]] bool consumed() const QUILLO_REALTIME { return consumer() != noRule; }

private:
    RuleChain(const CompiledRules& rules, const RuleTable::Run& first) QUILLO_REALTIME
        : rules_(rules), run_(&first), next_(first.begin) {}

    const CompiledRules& rules_;
    const RuleTable::Run* run_;
    std::uint32_t next_;
};

}  // namespace quillo
