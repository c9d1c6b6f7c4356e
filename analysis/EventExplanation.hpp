// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "analysis/AskedEvent.hpp"
#include "analysis/EngineProbe.hpp"
#include "engine/MIDIMessage.hpp"
#include "engine/SampleTime.hpp"
#include "engine/TriggerPattern.hpp"

namespace quillo {

/// What an event meant to one rule.
struct RuleAccount {
    enum class Verdict : std::uint8_t {
        fires,
        fails,        ///< it was tried and does not match
        standsAside,  ///< such events do not come to it, and it has no say in what becomes of them
        neverTried,   ///< a rule before it consumed the event
    };

    Verdict verdict = Verdict::standsAside;
    /// Of a rule that fails: the first thing that is not as it should be. To a rule of the other kind (a
    /// host-transport rule facing a message, and the other way round) that is the kind.
    TriggerCondition failure = TriggerCondition::kind;
    /// Of a rule that fires: what it sends, and how many milliseconds after the event.
    std::vector<MIDIMessage> messages;
    SampleTime delay = 0;
};

/// Why an event did what it did.
struct EventExplanation {
    std::vector<RuleAccount> rules;       ///< one for each rule of the list
    std::optional<std::size_t> consumer;  ///< the rule that consumed the event, by its policy
    bool forwarded = false;               ///< whether the event itself went out
};

/// Puts the event to the engine and accounts for what each rule made of it. The engine decides: nothing of
/// its matching is done again here.
[[nodiscard]] EventExplanation explain(const EngineProbe& probe, const AskedEvent& event);

}  // namespace quillo
