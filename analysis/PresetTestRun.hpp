// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "analysis/EngineProbe.hpp"
#include "analysis/Performance.hpp"
#include "analysis/PresetTest.hpp"
#include "engine/MIDIMessage.hpp"
#include "engine/SampleTime.hpp"

namespace quillo {

/// A place in the order of what leaves where not what is wanted leaves: another message, one too few or one
/// too many.
struct Mismatch {
    SampleTime time = 0;   ///< in milliseconds
    std::size_t line = 0;  ///< that wants the message, or whose event made it leave; 0 of loading
    std::optional<MIDIMessage> wanted;
    std::optional<Departure> got;
};

/// Plays a test to the rules of a preset. Empty where all that is wanted leaves, in this order, and nothing
/// else.
[[nodiscard]] std::vector<Mismatch> mismatches(const PresetTest& test, EngineProbe& probe);

/// The text of a test that these rules pass: what they make of `events`, which are in milliseconds and in
/// order of time.
[[nodiscard]] std::string recordedTest(EngineProbe& probe, std::span<const TimedEvent> events);

}  // namespace quillo
