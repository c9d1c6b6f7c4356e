// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/EventExplanation.hpp"

#include <utility>

#include "midi/Status.hpp"
#include "rules/TaggedUnion.hpp"

namespace quillo {

namespace {

using Verdict = RuleAccount::Verdict;

/// Every rule stands aside but those that fired.
EventExplanation accountOfFirings(std::size_t ruleCount, EngineProbe::Outcome outcome) {
    EventExplanation explanation{std::vector<RuleAccount>(ruleCount), outcome.consumer, outcome.forwarded};
    for (auto& firing : outcome.firings) {
        auto& account = explanation.rules[firing.rule];
        account.verdict = Verdict::fires;
        account.messages = std::move(firing.messages);
        account.delay = firing.delay;
    }
    return explanation;
}

/// The account of a chain event: `failureOf(rule)` says why a rule that was tried did not fire.
template <class FailureOf>
EventExplanation accountOfChain(const EngineProbe& probe, EngineProbe::Outcome outcome, FailureOf failureOf) {
    auto explanation = accountOfFirings(probe.rules().size(), std::move(outcome));
    for (std::size_t rule = 0; rule < explanation.rules.size(); ++rule) {
        auto& account = explanation.rules[rule];
        if (account.verdict == Verdict::fires || probe.rules()[rule].trigger.is<RuleTriggerV2::OnLoad>()) {
            continue;
        }
        const bool wasTried = !explanation.consumer || rule <= *explanation.consumer;
        account.verdict = wasTried ? Verdict::fails : Verdict::neverTried;
        account.failure = failureOf(rule);
    }
    return explanation;
}

EventExplanation explainMessage(const EngineProbe& probe, const MIDIMessage& message) {
    if (midi::isSystemExclusive(message.bytes())) {
        return accountOfFirings(probe.rules().size(), {});
    }
    return accountOfChain(probe, probe.put(message.bytes()), [&](std::size_t rule) {
        return probe.firstFailure(rule, message.bytes()).value_or(TriggerCondition::kind);
    });
}

EventExplanation explainTransport(const EngineProbe& probe, HostTransportTriggerVariantsV2 change) {
    return accountOfChain(probe, probe.put(change), [](std::size_t) { return TriggerCondition::kind; });
}

}  // namespace

EventExplanation explain(const EngineProbe& probe, const AskedEvent& event) {
    return std::visit(
        Overloaded{
            [&](const MIDIMessage& message) { return explainMessage(probe, message); },
            [&](HostTransportTriggerVariantsV2 change) { return explainTransport(probe, change); },
            [&](PluginLoad) { return accountOfFirings(probe.rules().size(), probe.putLoading()); },
        },
        event);
}

}  // namespace quillo
