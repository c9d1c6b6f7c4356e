// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <vector>

#include "analysis/AskedEvent.hpp"
#include "analysis/EngineProbe.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// Messages enough to see all that a rule list can do: each kind of message that a rule can wait for, on every
/// channel, with every number that a rule of the list names and one that none names.
///
/// Rules compare numbers with those that they name and copy numbers, and do nothing else with them: what no
/// rule names, they all treat alike. So whatever some message makes some rule do, one of these makes it do, too;
/// and two rules that send the same note for some messages do so for two of these.
[[nodiscard]] std::vector<MIDIMessage> tellingMessages(const std::vector<Rule>& rules);

/// Whether an event is more than a number that a rule names: a channel message with a data byte above 127 is not.
[[nodiscard]] bool canArrive(const AskedEvent& event);

/// An event, and what the engine made of it.
struct Trial {
    const AskedEvent& event;
    const EngineProbe::Outcome& outcome;
};

/// Puts all telling messages, every change of the host's transport, and loading to the engine.
void tryTellingEvents(EngineProbe& probe, const std::function<void(const Trial&)>& watch);

}  // namespace quillo
