// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>

#include "engine/CompiledRules.hpp"
#include "engine/Generator.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// One event's way through the rules: hands out the rules that fire, in order, until the list ends or a rule's
/// policy consumes the event.
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
        : RuleChain(rules, rules.index.matching(message)) {}
    RuleChain(const CompiledRules& rules, HostTransportTriggerVariantsV2 trigger) QUILLO_REALTIME
        : RuleChain(rules, rules.index.matching(trigger)) {}

    /// The next rule that the event fires, or null when there is none any more.
    [[nodiscard]] const MIDIRuleInternal* next() QUILLO_REALTIME;

    /// Once `next` has returned null: whether a rule consumed the event.
    [[nodiscard]] bool consumed() const QUILLO_REALTIME { return consumed_; }

    /// Once `next` has returned null: the rule that consumed the event, `noRule` when none did. Rules behind it
    /// were not tried. `last` is the rule that `next` handed out last, or null: who only renders need not know
    /// the consumer, and so the chain does not keep it.
    [[nodiscard]] RuleOrdinal consumer(const MIDIRuleInternal* last) const;

private:
    RuleChain(const CompiledRules& rules, RuleIndex::Matches matches) QUILLO_REALTIME
        : rules_(rules.rulesInternal), matches_(matches), eatNonMatching_(rules.index.eatNonMatching()) {}

    std::span<const MIDIRuleInternal> rules_;
    RuleIndex::Matches matches_;
    /// The first rule not yet passed that consumes what it does not match; points at `noRule` at the end.
    const RuleOrdinal* eatNonMatching_;
    /// Whether the rule handed out last consumes the event.
    bool lastOneEats_ = false;
    bool consumed_ = false;
};

}  // namespace quillo
