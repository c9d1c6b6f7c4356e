// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "analysis/AskedEvent.hpp"
#include "engine/CompiledRules.hpp"
#include "engine/MIDIMessage.hpp"
#include "engine/RuleChain.hpp"
#include "engine/SampleTime.hpp"
#include "engine/TriggerPattern.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// Puts single events to the engine and says what the rules made of each.
///
/// What happens is read from the chain that a render cycle runs an event through, and from the compiled
/// outputs that it sends. Events know nothing of each other.
class EngineProbe {
public:
    static constexpr std::uint64_t oneSampleAMillisecond = 1000;

    /// Delays are counted in milliseconds, or in the samples of another rate. Throws a `FatalError` for rules
    /// that no unit can install.
    explicit EngineProbe(const std::vector<Rule>& rules, std::uint64_t sampleRate = oneSampleAMillisecond);

    /// A rule that fired.
    struct Firing {
        std::size_t rule = 0;               ///< its position in the list
        SampleTime delay = 0;               ///< after the event
        std::vector<MIDIMessage> messages;  ///< what it sent, in order
    };

    struct Outcome {
        std::vector<Firing> firings;          ///< in the order of the rules
        std::optional<std::size_t> consumer;  ///< the rule behind which no rule was tried
        bool forwarded = false;               ///< whether the event itself went out
    };

    /// A message of at most three bytes. Behind a shorter one lie zeros, where a host may leave anything.
    [[nodiscard]] Outcome put(std::span<const std::uint8_t> message) const;
    [[nodiscard]] Outcome put(HostTransportTriggerVariantsV2 change) const;
    /// The first cycle after the plug-in was loaded.
    [[nodiscard]] Outcome putLoading() const;
    /// Any of them. System exclusive fires nothing and is not forwarded.
    [[nodiscard]] Outcome put(const AskedEvent& event) const;

    /// The first condition of a message-based rule that the message does not meet. None for a rule that
    /// matches it, and for a rule of another kind.
    [[nodiscard]] std::optional<TriggerCondition> firstFailure(std::size_t rule,
                                                               std::span<const std::uint8_t> message) const;

    [[nodiscard]] const std::vector<Rule>& rules() const { return compiled_.rules; }

private:
    [[nodiscard]] Outcome outcome(RuleChain chain, const TriggerBytes& trigger) const;

    CompiledRules compiled_;
    std::vector<std::optional<TriggerPattern>> patterns_;  ///< of the list's message-based rules
};

}  // namespace quillo
