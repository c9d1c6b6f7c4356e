// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "analysis/AskedEvent.hpp"
#include "analysis/EngineProbe.hpp"
#include "engine/MIDIMessage.hpp"
#include "engine/SampleTime.hpp"

namespace quillo {

/// An event at its place on a timeline, whose unit is the caller's.
struct TimedEvent {
    SampleTime time = 0;
    AskedEvent event;
};

/// A message that leaves, and who sends it.
struct Departure {
    SampleTime time = 0;  ///< after the event, or on the timeline
    MIDIMessage message;
    std::optional<std::size_t> rule;  ///< nothing where the event itself is forwarded
    std::size_t event = 0;            ///< which of several events it answers

    bool operator==(const Departure&) const = default;
};

/// What leaves because of one event that the rules have answered, in order of time, which is milliseconds
/// after the event.
[[nodiscard]] std::vector<Departure> departures(const EngineProbe::Outcome& outcome, const AskedEvent& event);

/// What leaves when `events` are played, which are in order of time, in the order in which it leaves. The
/// timeline has the unit in which the probe counts delays. Nothing is loaded unless `events` begin with it.
///
/// Each event is put to the engine by itself, for no rule remembers another one. So there is room for any
/// number of delayed outputs, which a unit has not.
[[nodiscard]] std::vector<Departure> played(const EngineProbe& probe, std::span<const TimedEvent> events);

}  // namespace quillo
