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
#include "engine/RuleProcessor.hpp"
#include "engine/SampleTime.hpp"
#include "engine/TriggerPattern.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// Puts single events to the engine and says what the rules made of each.
///
/// What is sent and forwarded comes from a processor that runs as in a render cycle, which rule did it from
/// the chain that the processor uses as well. Events know nothing of each other: each is the first of its
/// cycle, and the cycle is so long that every delayed output is seen.
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
    [[nodiscard]] Outcome put(std::span<const std::uint8_t> message);
    [[nodiscard]] Outcome put(HostTransportTriggerVariantsV2 change);
    /// The first cycle after the plug-in was loaded.
    [[nodiscard]] Outcome putLoading() const;
    /// Any of them. System exclusive fires nothing and is not forwarded.
    [[nodiscard]] Outcome put(const AskedEvent& event);

    /// The first condition of a message-based rule that the message does not meet. None for a rule that
    /// matches it, and for a rule of another kind.
    [[nodiscard]] std::optional<TriggerCondition> firstFailure(std::size_t rule,
                                                               std::span<const std::uint8_t> message) const;

    /// Whether the event is what the rule's trigger waits for.
    [[nodiscard]] bool waitsFor(std::size_t rule, std::span<const std::uint8_t> message) const;
    [[nodiscard]] bool waitsFor(std::size_t rule, HostTransportTriggerVariantsV2 change) const;

    [[nodiscard]] const std::vector<Rule>& rules() const { return compiled_.rules; }

private:
    struct Emission {
        SampleTime time;
        std::vector<MIDIMessage> messages;
    };
    using Emissions = std::vector<Emission>;

    [[nodiscard]] Outcome outcome(RuleChain chain, Emissions emissions) const;

    std::uint64_t sampleRate_;
    CompiledRules compiled_;
    RuleProcessor processor_;
    std::vector<std::size_t> positions_;                   ///< in the list, of the chain's rules
    std::vector<std::size_t> onLoadPositions_;             ///< in the list, of the on-load rules
    std::vector<std::optional<TriggerPattern>> patterns_;  ///< of the list's message-based rules
};

}  // namespace quillo
