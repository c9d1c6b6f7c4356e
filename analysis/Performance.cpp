// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/Performance.hpp"

#include <limits>
#include <utility>

#include "platform/InStableOrder.hpp"

namespace quillo {

namespace {

/// The end of all timelines where the sum would lie behind it.
SampleTime later(SampleTime time, SampleTime delay) {
    SampleTime due = 0;
    return __builtin_add_overflow(time, delay, &due) ? std::numeric_limits<SampleTime>::max() : due;
}

}  // namespace

std::vector<Departure> departures(const EngineProbe::Outcome& outcome, const AskedEvent& event) {
    std::vector<Departure> all;
    for (const auto& firing : outcome.firings) {
        for (const auto& message : firing.messages) {
            all.push_back({firing.delay, message, firing.rule});
        }
    }
    if (outcome.forwarded) {
        all.push_back({0, std::get<MIDIMessage>(event), std::nullopt});
    }
    return inStableOrder(std::move(all), &Departure::time);
}

std::vector<Departure> played(const EngineProbe& probe, std::span<const TimedEvent> events) {
    std::vector<Departure> all;
    for (std::size_t position = 0; position < events.size(); ++position) {
        const auto& [time, event] = events[position];
        for (auto& departure : departures(probe.put(event), event)) {
            departure.time = later(time, departure.time);
            departure.event = position;
            all.push_back(std::move(departure));
        }
    }
    return inStableOrder(std::move(all), &Departure::time);
}

}  // namespace quillo
